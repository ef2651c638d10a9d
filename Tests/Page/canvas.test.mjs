// Draws with the browser backend in Chromium: the C++ tests of Tests/Canvas, and the runtime's own edges.
import assert from 'node:assert/strict';
import { mkdtempSync, copyFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { after, before, test } from 'node:test';
import { build } from 'esbuild';
import { chromium } from 'playwright-core';
import { serve } from '../../Tools/serve.mjs';

const root = join(dirname(fileURLToPath(import.meta.url)), '../..');
const flags = '--no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking --disable-component-update --disable-sync';

let folder, server, browser, page;
const complaints = [];

before(async () => {
  folder = mkdtempSync(join(tmpdir(), 'zelkon-canvas-'));
  copyFileSync(join(root, 'build/wasm/bin/zelkon-canvas-tests.wasm'), join(folder, 'zelkon-canvas-tests.wasm'));
  await build({
    stdin: {
      contents: ['canvas', 'heap', 'imports', 'locale'].map((name) => `export * from './Backends/Canvas/${name}';`).join('\n'),
      resolveDir: root,
    },
    bundle: true,
    format: 'esm',
    target: 'es2020',
    outfile: join(folder, 'runtime.js'),
    logLevel: 'warning',
  });
  writeFileSync(
    join(folder, 'main.js'),
    `import { CanvasRuntime, Heap, LocaleRuntime, canvasImports } from './runtime.js';
     window.LocaleRuntime = LocaleRuntime;
     window.CanvasRuntime = CanvasRuntime;
     window.canvas = new CanvasRuntime();
     const heap = new Heap();
     const code = await WebAssembly.compileStreaming(fetch('zelkon-canvas-tests.wasm'));
     // What the backend does not provide is not called.
     const imports = { env: canvasImports(heap, window.canvas, new LocaleRuntime('en_US')) };
     window.screens = [];
     imports.env.canvasTestScreen = () => screens[screens.push(window.canvas.bindScreen(document.createElement('canvas'))) - 1];
     for (const { module, name } of WebAssembly.Module.imports(code)) (imports[module] ??= {})[name] ??= () => 8;
     const { exports } = await WebAssembly.instantiate(code, imports);
     heap.memory = exports.memory;
     exports.__wasm_call_ctors();
     window.textAt = (at) => new TextDecoder().decode(heap.all.subarray(at, heap.all.indexOf(0, at)));
     window.module = exports;`,
  );
  writeFileSync(join(folder, 'index.html'), '<!doctype html><title>canvas</title><script type="module" src="main.js"></script>');
  writeFileSync(join(folder, 'favicon.ico'), '');
  server = await serve([folder]);
  browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: flags.split(' ') });
  page = await browser.newPage();
  // These tests read pixels over and over, which Chromium finds worth a hint.
  page.on('console', (message) => message.text().includes('willReadFrequently') || complaints.push(message.text()));
  page.on('pageerror', (error) => complaints.push(String(error)));
  await page.goto(`http://127.0.0.1:${server.address().port}/`);
  await page.waitForFunction(() => window.module, null, { timeout: 20000 });
});

after(async () => {
  await browser?.close();
  server?.close();
  rmSync(folder, { recursive: true, force: true });
});

test('what the C++ side draws in the page', async (context) => {
  const names = await page.evaluate(() => {
    return Array.from({ length: module.canvasTestCount() }, (_, i) => textAt(module.canvasTestName(i)));
  });
  assert.ok(names.length > 30);
  for (const [index, name] of names.entries()) {
    await context.test(name, async () => {
      assert.equal(await page.evaluate((i) => textAt(module.canvasTestRun(i)), index), '');
    });
  }
});

test('surfaces are given back', async () => {
  // The page's own.
  await page.evaluate(() => screens.forEach((id) => window.canvas.unbindScreen(id)));
  assert.equal(await page.evaluate(() => window.canvas.surfaces.size), 0);
  assert.equal(await page.evaluate(() => window.canvas.painters.size), 0);
});

test('texts that are no longer new are forgotten', async () => {
  // The last of the tests above has drawn 3 MB of texts.
  const kept = await page.evaluate(() => window.canvas.strings.reduce((sum, text) => sum + text.length, 0));
  assert.ok(kept < 300000, `${kept}`);
});

test('a canvas that was given back serves again, blank and with no state of before', async () => {
  const result = await page.evaluate(() => {
    const runtime = new CanvasRuntime();
    const fill = [8, 19, 0, 1, 0, 0, 1, 0, 0, 0, 0, 1, 4, 0, 1, 4, 4, 1, 0, 4, 3];
    const translate = [6, 6, 1, 0, 0, 1, 2, 0];
    const first = runtime.make(4, 4);
    const { canvas } = runtime.surfaces.get(first);
    // A painter that is never closed leaves its state behind.
    runtime.replay(new Float64Array([1, 3, 7, first, 1, 3, 1, 7, ...translate, ...fill, 17, 1, first]), new Uint8Array(0));
    const second = runtime.make(6, 5);
    const isSame = runtime.surfaces.get(second).canvas === canvas;
    const pixels = new Uint8Array(4 * 6 * 5);
    const blank = runtime.read(second, pixels) && pixels.every((byte) => byte === 0);
    runtime.replay(new Float64Array([1, 3, 8, second, 1, 3, 1, 8, ...fill, 2, 1, 8]), new Uint8Array(0));
    runtime.read(second, pixels);
    return { isSame, size: [canvas.width, canvas.height], blank, red: Array.from({ length: 6 }, (_, x) => pixels[4 * (4 * 6 + x)]) };
  });
  assert.deepEqual(result, { isSame: true, size: [6, 5], blank: true, red: [255, 255, 255, 255, 0, 0] });
});

test('widths grow exactly with the size', async () => {
  const widths = await page.evaluate(() => {
    const bytes = new TextEncoder().encode('Groceries & Household');
    const context = new OffscreenCanvas(1, 1).getContext('2d');
    const face = window.canvas.fonts.face(0);
    return [9, 10.5, 12, 37].map((size) => {
      context.font = `${size}px ${face.family}`;
      context.fontKerning = 'normal';
      context.textRendering = 'geometricPrecision';
      return (context.measureText('Groceries & Household').width / size) * face.widthFactor - window.canvas.measure(0, bytes);
    });
  });
  for (const difference of widths) assert.ok(Math.abs(difference) < 1e-4, `${widths}`);
});

test('a prepared picture is found by its bytes, and only whole pictures are prepared', async () => {
  const found = await page.evaluate(async () => {
    const source = new OffscreenCanvas(3, 2);
    const context = source.getContext('2d');
    context.fillStyle = 'rgb(51, 102, 153)';
    context.fillRect(0, 0, 1, 1);
    const bytes = new Uint8Array(await (await source.convertToBlob()).arrayBuffer());
    const unprepared = window.canvas.decode(bytes).id;
    await window.canvas.preload(bytes);
    await window.canvas.preload(bytes.subarray(0, 20));
    const { id, width, height } = window.canvas.decode(bytes.slice());
    const pixels = new Uint8Array(24);
    const read = window.canvas.read(id, pixels);
    return { unprepared, width, height, read, pixel: Array.from(pixels.subarray(0, 8)), cut: window.canvas.decode(bytes.subarray(0, 20)).id };
  });
  assert.deepEqual(found, { unprepared: 0, width: 3, height: 2, read: true, pixel: [51, 102, 153, 255, 0, 0, 0, 0], cut: 0 });
});

test('a screen is the canvas of an element, given its size in pixels', async () => {
  const shown = await page.evaluate(() => {
    const element = document.createElement('canvas');
    const id = window.canvas.bindScreen(element);
    // resize; open; select; fill of the rectangle (1, 0, 2, 1) in red; close.
    const commands = [18, 3, id, 8, 6, 1, 3, 99, id, 2, 3, 1, 99, 8, 19, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 3, 0, 1, 3, 1, 1, 1, 1, 2, 1, 99];
    window.canvas.replay(new Float64Array(commands), new Uint8Array(0));
    const data = element.getContext('2d').getImageData(0, 0, 8, 6).data;
    const at = (x, y) => Array.from(data.subarray(4 * (8 * y + x), 4 * (8 * y + x) + 4));
    return [element.width, element.height, at(2, 5), at(5, 4), at(1, 5), at(2, 3)];
  });
  assert.deepEqual(shown, [8, 6, [255, 0, 0, 255], [255, 0, 0, 255], [0, 0, 0, 0], [0, 0, 0, 0]]);
});

test('a command that fails leaves the rest of the frame alone', async () => {
  const before = complaints.length;
  const red = await page.evaluate(() => {
    const element = document.createElement('canvas');
    element.width = element.height = 4;
    const id = window.canvas.bindScreen(element);
    // A gradient with an impossible stop stands before the fill.
    const gradient = [10, 13, 0, 0, 4, 0, 0, 3, 1, 0, 7, 0, 0, 0, 1];
    const fill = [8, 19, 0, 1, 0, 0, 1, 0, 0, 0, 0, 1, 4, 0, 1, 4, 4, 1, 0, 4, 3];
    window.canvas.replay(new Float64Array([1, 3, 98, id, 1, 3, 1, 98, ...gradient, ...fill, 2, 1, 98]), new Uint8Array(0));
    return element.getContext('2d').getImageData(1, 1, 1, 1).data[0];
  });
  assert.equal(red, 255);
  assert.equal(complaints.length, before + 1);
  complaints.length = before;
});

test('a group that cannot be drawn leaves the rest of the frame alone', async () => {
  const before = complaints.length;
  const [pixel, saved] = await page.evaluate(() => {
    const element = document.createElement('canvas');
    element.width = element.height = 4;
    const runtime = new CanvasRuntime();
    const id = runtime.bindScreen(element);
    const context = element.getContext('2d');
    let saved = 0;
    for (const [name, by] of [['save', 1], ['restore', -1]]) {
      context[name] = () => {
        saved += by;
        CanvasRenderingContext2D.prototype[name].call(context);
      };
    }
    context.drawImage = () => {
      throw new Error('no room');
    };
    const group = [14, 15, 0, 0, 4, 4, 0.5, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0];
    const fill = [8, 19, 0, 1, 0, 0, 1, 0, 0, 0, 0, 1, 4, 0, 1, 4, 1, 1, 0, 1, 3];
    runtime.replay(new Float64Array([1, 3, 7, id, 1, 3, 1, 7, ...group, 15, 0, ...fill, 2, 1, 7]), new Uint8Array(0));
    return [[...context.getImageData(1, 3, 1, 1).data], saved];
  });
  assert.deepEqual(pixel, [255, 0, 0, 255], 'the lowest row, with neither the alpha nor the transform of the group');
  assert.equal(saved, 0);
  assert.equal(complaints.length, before + 1);
  complaints.length = before;
});

// A group with its brightness, filled in one colour with half its alpha, in a fresh runtime; answers the pixel.
const brightened = () =>
  page.evaluate(() => {
    const runtime = new CanvasRuntime();
    const id = runtime.make(2, 2);
    const group = [14, 15, 0, 0, 2, 2, 1, 0, 1.5, 0, 0, 0, 0, 0, 0, 0, 0];
    const fill = [8, 19, 0, 0.2, 0.4, 0.8, 0.5, 0, 0, 0, 0, 1, 2, 0, 1, 2, 2, 1, 0, 2, 3];
    runtime.replay(new Float64Array([1, 3, 7, id, 1, 3, 1, 7, ...group, ...fill, 15, 0, 2, 1, 7]), new Uint8Array(0));
    const pixels = new Uint8Array(16);
    runtime.read(id, pixels);
    return Array.from(pixels.subarray(0, 4));
  });

// (0.3, 0.6, 1) at alpha 0.5, premultiplied.
const expectBrightened = (pixel) => [38, 77, 128, 128].forEach((value, i) => assert.ok(Math.abs(pixel[i] - value) <= 1, `${pixel}`));

test('brightness is the same where contexts have no filters', async (context) => {
  expectBrightened(await brightened());
  await page.evaluate(() => {
    window.filter = Object.getOwnPropertyDescriptor(OffscreenCanvasRenderingContext2D.prototype, 'filter');
    delete OffscreenCanvasRenderingContext2D.prototype.filter;
  });
  context.after(() => page.evaluate(() => Object.defineProperty(OffscreenCanvasRenderingContext2D.prototype, 'filter', window.filter)));
  expectBrightened(await brightened());
});

test('pages without off-screen canvases draw on elements', async (context) => {
  await page.evaluate(() => {
    window.keptCanvas = window.OffscreenCanvas;
    delete window.OffscreenCanvas;
  });
  context.after(() => page.evaluate(() => { window.OffscreenCanvas = window.keptCanvas; }));
  expectBrightened(await brightened());
});

test('a group that is too large stays unseen, and what follows is drawn', async () => {
  const pixel = await page.evaluate(() => {
    const id = window.canvas.make(2, 2);
    const huge = [14, 15, 0, 0, 40000, 40000, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0];
    const fill = (...color) => [8, 19, 0, ...color, 0, 0, 0, 0, 1, 2, 0, 1, 2, 2, 1, 0, 2, 3];
    const commands = [1, 3, 97, id, 1, 3, 1, 97, ...huge, ...fill(0, 1, 0, 1), 15, 0, ...fill(1, 0, 0, 1), 2, 1, 97];
    window.canvas.replay(new Float64Array(commands), new Uint8Array(0));
    const pixels = new Uint8Array(16);
    window.canvas.read(id, pixels);
    return Array.from(pixels.subarray(4, 8));
  });
  assert.deepEqual(pixel, [255, 0, 0, 255]);
});

const nbsp = '\u00a0';
const narrow = '\u202f';
const amounts = [
  ['en_US', 1234567, null, '1,234,567'],
  ['en_US', -60, null, '-60'],
  ['en_US', 1234, 'USD', '$1,234'],
  ['en_US', -60, 'USD', '-$60'],
  ['en_GB', 1234, 'USD', 'US$1,234'],
  ['en_GB', 1234, 'JPY', 'JP¥1,234'],
  ['de_DE', 1234567, null, '1.234.567'],
  ['de_DE', -60, 'USD', `-60${nbsp}$`],
  ['de_DE', 1234, 'CHF', `1.234${nbsp}CHF`],
  ['fr_FR', 1234, 'USD', `1${narrow}234${nbsp}$US`],
  ['ja_JP', 1234, 'JPY', '￥1,234'],
  ['en_US', 0.5, null, '0'],
  ['en_US', 1.5, null, '2'],
  ['en_US', 2.5, null, '2'],
  ['en_US', -2.5, null, '-2'],
  ['en_US', -0.5, null, '-0'],
  ['en_US', -0, 'USD', '$0'],
  ['en_US', NaN, null, 'NaN'],
  ['en_US', Infinity, null, '∞'],
  ['en_US', 1234, 'DOLLARS', `DOLLARS${nbsp}1,234`],
  ['de_DE', 1234, 'x', `1.234${nbsp}x`],
  ['no such language at all', 7, null, '7'],
];

test('numbers and amounts read as the locale writes them', async () => {
  const texts = await page.evaluate(
    (rows) =>
      rows.map(([locale, value, code]) => {
        const bytes = code === null ? null : new TextEncoder().encode(code);
        return new TextDecoder().decode(new LocaleRuntime(locale).formatNumber(value, bytes, 0));
      }),
    amounts,
  );
  assert.deepEqual(texts, amounts.map((row) => row[3]));
});

test('halves go to even where the engine has no rounding modes', async () => {
  const texts = await page.evaluate(() => {
    const kept = Intl.NumberFormat;
    Intl.NumberFormat = class extends kept {
      constructor(tag, options) {
        super(tag, { ...options, roundingMode: undefined });
      }
    };
    try {
      const locale = new LocaleRuntime('en_US');
      const text = (value, digits) => new TextDecoder().decode(locale.formatNumber(value, null, digits));
      return [[0.5, 0], [1.5, 0], [2.5, 0], [-2.5, 0], [-0.5, 0], [2.4, 0], [2.6, 0], [0.125, 2], [Infinity, 0]].map((row) => text(...row));
    } finally {
      Intl.NumberFormat = kept;
    }
  });
  assert.deepEqual(texts, ['0', '2', '2', '-2', '-0', '2', '3', '0.12', '∞']);
});

test('months are known by their names in the locale, whatever the case', async () => {
  const months = await page.evaluate(() =>
    [
      ['en_US', 'January'], ['en_US', 'jan'], ['en_US', 'DEC'], ['en_US', 'Sept'], ['en_US', ''], ['en_US', 'Jan 2010'], ['en_US', ' Jan'],
      ['de_DE', 'Mär'], ['de_DE', 'Dezember'], ['fr_FR', 'févr.'], ['fr_FR', 'AOÛT'], ['ja_JP', '1月'], ['ja_JP', '12月'],
    ].map(([locale, name]) => new LocaleRuntime(locale).monthNamed(new TextEncoder().encode(name))),
  );
  assert.deepEqual(months, [1, 1, 12, 0, 0, 0, 0, 3, 12, 2, 8, 1, 12]);
});

test('the longest year of the calendar', async () => {
  const counts = await page.evaluate(() => ['en_US', 'he-u-ca-hebrew', 'ar-u-ca-coptic', 'th-u-ca-buddhist'].map((tag) => new LocaleRuntime(tag).monthsPerYear()));
  assert.deepEqual(counts, [12, 13, 13, 12]);
});

test('nothing was reported to the console', () => {
  assert.deepEqual(complaints, []);
});
