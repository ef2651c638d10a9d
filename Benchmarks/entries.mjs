// Times amounts over time in Chromium, from 1,000 to 1,000,000 entries: the main thread's work in "SetPlotData" and the
// first frame, in each frame of the wipe and in a pointer move over the line, and the memory that is kept afterwards
// beyond the page's own objects. Prints milliseconds (medians, and the least and longest of the first frame, which counts
// "SetPlotData" in) and megabytes.
//
// node Benchmarks/entries.mjs [--counts N,N,...] [--runs N] [--profile FILE]
//
// The page's module must have been built into out/web. --profile also writes a CPU profile of the runs, for the browser's
// developer tools, and prints the functions that took most of the time; it is for one count.
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { chromium } from 'playwright-core';
import { serve } from '../Tools/serve.mjs';
import { startProfiling } from './profiler.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const { values } = parseArgs({
  options: {
    counts: { type: 'string', default: '1000,10000,100000,1000000' },
    runs: { type: 'string', default: '12' },
    profile: { type: 'string' },
  },
});
const runs = Number(values.runs);
const warmUps = 4;

// Runs in the page. Work of the main thread is timed where the page hands over to the element: around "SetPlotData",
// around every callback of an animation frame, and around a pointer event, which the element answers at once.
async function prepare(count) {
  const months = ['Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', 'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec'];
  window.entries = Array.from({ length: count }, (_, i) => {
    const day = new Date(Date.UTC(1900, 0, 1 + (i % 50000)));
    const month = months[day.getUTCMonth()];
    const amount = (1000 + 400 * Math.sin(i / 90) + ((i * 7919) % 1000) / 7).toFixed(2);
    return {
      humanX: `${day.getUTCDate()} ${month} ${day.getUTCFullYear()}`,
      mediumHumanX: `${day.getUTCDate()} ${month}`,
      shortHumanX: month,
      shortHumanXSubtitle: `${day.getUTCFullYear()}`,
      humanY: `$${amount}`,
      y: amount,
    };
  });
  if (window.frameTimes) return;
  const ask = window.requestAnimationFrame.bind(window);
  window.frameTimes = [];
  window.requestAnimationFrame = (callback) =>
    ask((timestamp) => {
      const start = performance.now();
      callback(timestamp);
      window.frameTimes.push(performance.now() - start);
    });
}

async function measure({ runs, warmUps }) {
  const chart = document.getElementById('chart');
  const results = { data: [], first: [], frames: [], moves: [] };
  for (let run = -warmUps; run < runs; ++run) {
    // A chart put back into the page starts over and opens anew.
    const { parentNode } = chart;
    chart.remove();
    await new Promise((resolve) => setTimeout(resolve, 60));
    parentNode.append(chart);
    window.frameTimes.length = 0;
    const displayed = new Promise((resolve) => (window.GraphHasDisplayed = resolve));
    const start = performance.now();
    chart.SetPlotData(window.entries);
    const handedOver = performance.now() - start;
    await displayed;
    await new Promise((resolve) => setTimeout(resolve, 60));
    const frames = [...window.frameTimes];
    const box = chart.getBoundingClientRect();
    const target = chart.shadowRoot.querySelector('canvas');
    const moves = 40;
    const moved = performance.now();
    for (let i = 0; i < moves; ++i) {
      const at = { clientX: box.x + 120 + i * 10, clientY: box.y + box.height - 80, bubbles: true, composed: true, isPrimary: true };
      target.dispatchEvent(new PointerEvent('pointermove', at));
    }
    const moving = (performance.now() - moved) / moves;
    await new Promise((resolve) => setTimeout(resolve, 60));
    if (run < 0) continue;
    results.data.push(handedOver);
    results.first.push(handedOver + frames[0]);
    results.frames.push(...frames.slice(1));
    results.moves.push(moving);
  }
  return results;
}

const server = await serve([here, join(here, '..', 'out', 'web')]);
const browser = await chromium.launch({
  executablePath: '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu', '--js-flags=--expose-gc'],
});
const line = (name, cells) => console.log(name.padEnd(10) + cells.map((cell) => cell.padStart(13)).join(''));
try {
  line('entries', ['SetPlotData', 'first frame', 'least', 'longest', 'wipe frame', 'pointer', 'script MB', 'buffers MB', 'module MB']);
  for (const count of values.counts.split(',').map(Number)) {
    const page = await browser.newPage({ viewport: { width: 800, height: 600 } });
    page.on('pageerror', (error) => console.error(error));
    await page.addInitScript(() => {
      const { instantiate } = WebAssembly;
      WebAssembly.instantiate = async (...code) => {
        const instance = await instantiate.apply(WebAssembly, code);
        window.moduleMemory = Object.values(instance.exports).find((value) => value instanceof WebAssembly.Memory);
        return instance;
      };
    });
    await page.goto(`http://127.0.0.1:${server.address().port}/entries.html`);
    await page.evaluate(() => customElements.whenDefined('zelkon-plot').then(() => {}));
    await page.evaluate(prepare, count);
    const tools = await page.context().newCDPSession(page);
    const memory = async () => {
      await page.evaluate('gc(), gc()');
      const { usedSize, backingStorageSize } = await tools.send('Runtime.getHeapUsage');
      const module = await page.evaluate('moduleMemory.buffer.byteLength');
      return [usedSize, backingStorageSize, module];
    };
    await page.evaluate(measure, { runs: 0, warmUps: 0 });
    const before = await memory();
    const stopProfiling = values.profile && (await startProfiling(page, values.profile));
    const results = await page.evaluate(measure, { runs, warmUps });
    if (stopProfiling) await stopProfiling();
    const after = await memory();
    const sorted = (times) => times.sort((a, b) => a - b);
    const median = (times) => sorted(times)[times.length >> 1].toFixed(2);
    line(count.toString(), [
      median(results.data),
      median(results.first),
      sorted(results.first)[0].toFixed(2),
      results.first.at(-1).toFixed(2),
      median(results.frames),
      median(results.moves),
      ...after.map((size, i) => ((size - before[i]) / 1e6).toFixed(1)),
    ]);
    await page.close();
  }
} finally {
  await browser.close();
  server.close();
}
