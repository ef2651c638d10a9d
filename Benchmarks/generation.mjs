// Times parts of a new chart of amounts over time in Chromium: fitting 12, 100 and 1,000 long labels into 800 points, the
// generation of 12 and 60 bars, and the gridlines of ranges from a millionth to a thousand billions. Prints milliseconds:
// the least and the median.
//
// node Benchmarks/generation.mjs [--rounds N]
//
// Build first: cmake --preset wasm && cmake --build --preset wasm --target zelkon-plot-benchmarks
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { build } from 'esbuild';
import { chromium } from 'playwright-core';
import { serve } from '../Tools/serve.mjs';

const root = join(dirname(fileURLToPath(import.meta.url)), '..');
const { values } = parseArgs({ options: { rounds: { type: 'string', default: '20' } } });
const rounds = Number(values.rounds);
const warmUps = 5;

// What to call, with what, and how often within one round: the page's clock shows no less than a tenth of a millisecond.
const parts = [
  ['fitting 12 long labels', 'zelkon_benchmark_fit_labels', [12], 200],
  ['fitting 100 long labels', 'zelkon_benchmark_fit_labels', [100], 50],
  ['fitting 1,000 long labels', 'zelkon_benchmark_fit_labels', [1000], 10],
  ['generation of 12 bars', 'zelkon_benchmark_generate_bars', [12], 50],
  ['generation of 60 bars', 'zelkon_benchmark_generate_bars', [60], 20],
  ['gridlines of nineteen ranges', 'zelkon_benchmark_gridlines', [], 5000],
];

const folder = mkdtempSync(join(tmpdir(), 'zelkon-generation-'));
let server, browser;
try {
  await build({
    stdin: {
      contents: ['canvas', 'heap', 'imports', 'locale'].map((name) => `export * from './Backends/Canvas/${name}';`).join('\n'),
      resolveDir: root,
    },
    bundle: true,
    format: 'esm',
    target: 'es2022',
    outfile: join(folder, 'runtime.js'),
    logLevel: 'warning',
  });
  writeFileSync(
    join(folder, 'main.js'),
    `import { CanvasRuntime, Heap, LocaleRuntime, canvasImports } from './runtime.js';
     const heap = new Heap();
     const grow = (pages) => {
       try {
         return heap.memory.grow(pages) >= 0;
       } catch {
         return false;
       }
     };
     const code = await WebAssembly.compileStreaming(fetch('zelkon-plot-benchmarks.wasm'));
     const imports = { env: { ...canvasImports(heap, new CanvasRuntime(), new LocaleRuntime('en_US')), zelkon_page_grow_memory: grow, emscripten_get_now: () => performance.now() } };
     // What the module never calls.
     for (const { module, name } of WebAssembly.Module.imports(code)) (imports[module] ??= {})[name] ??= () => 8;
     const { exports } = await WebAssembly.instantiate(code, imports);
     heap.memory = exports.memory;
     exports.__wasm_call_ctors();
     window.module = exports;`,
  );
  writeFileSync(join(folder, 'index.html'), '<!doctype html><title>generation</title><script type="module" src="main.js"></script>');
  server = await serve([folder, join(root, 'build', 'wasm', 'bin')]);
  browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu'] });
  const page = await browser.newPage();
  page.on('pageerror', (error) => console.error(error));
  await page.goto(`http://127.0.0.1:${server.address().port}/`);
  await page.waitForFunction(() => window.module, null, { timeout: 20000 });
  const line = (name, cells) => console.log(name.padEnd(36) + cells.map((cell) => cell.padStart(9)).join(''));
  line('milliseconds', ['least', 'median']);
  for (const [name, call, words, runs] of parts) {
    const times = await page.evaluate(
      ({ call, words, rounds }) => Array.from({ length: rounds }, () => window.module[call](...words)),
      { call, words: [...words, runs], rounds: warmUps + rounds },
    );
    const sorted = times.slice(warmUps).sort((a, b) => a - b);
    line(name, [sorted[0], sorted[sorted.length >> 1]].map((time) => time.toFixed(3)));
  }
} finally {
  await browser?.close();
  server?.close();
  rmSync(folder, { recursive: true, force: true });
}
