// Times the pie in Chromium: the main thread's work in "SetPlotData" and the first frame, and in each frame of the
// opening animation. Prints milliseconds: median, the 95th percentile and the longest.
//
// In the first turn of a chart's frames the chart is empty yet and its opening begins; the first frame with slices comes
// with the second. Both count as the first frame here.
//
// node Benchmarks/page.mjs [--runs N] [--profile FILE]    the page's module must have been built into out/web
//
// --profile also writes a CPU profile of the runs, for the browser's developer tools, and prints the functions that
// took most of the time.
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { chromium } from 'playwright-core';
import { serve } from '../Tools/serve.mjs';
import { startProfiling } from './profiler.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const { values } = parseArgs({ options: { runs: { type: 'string', default: '50' }, profile: { type: 'string' } } });
const runs = Number(values.runs);
const warmUps = 10;

// Runs in the page. Work of the main thread is timed where the page hands over to the element: around "SetPlotData" and
// around every callback of an animation frame.
async function measure({ runs, warmUps }) {
  const pie = document.getElementById('pie');
  const data = Array.from({ length: 8 }, (_, i) => ({ key: `Category ${i + 1}`, value: 40.25 + 1300 / (i + 1) }));
  let frames = [];
  const ask = window.requestAnimationFrame.bind(window);
  window.requestAnimationFrame = (callback) =>
    ask((timestamp) => {
      const start = performance.now();
      callback(timestamp);
      frames.push(performance.now() - start);
    });
  const results = { data: [], first: [], frames: [] };
  for (let run = -warmUps; run < runs; ++run) {
    // A chart put back into the page starts over and opens anew.
    const { parentNode } = pie;
    pie.remove();
    await new Promise((resolve) => setTimeout(resolve, 60));
    parentNode.append(pie);
    frames = [];
    const displayed = new Promise((resolve) => (window.SpendingTrendsHaveDisplayed = resolve));
    const start = performance.now();
    pie.SetPlotData(data);
    const handedOver = performance.now() - start;
    await displayed;
    await new Promise((resolve) => setTimeout(resolve, 60));
    if (run < 0) continue;
    results.data.push(handedOver);
    results.first.push(handedOver + frames[0] + frames[1]);
    results.frames.push(...frames.slice(2));
  }
  return results;
}

const server = await serve([here, join(here, '..', 'out', 'web')]);
const browser = await chromium.launch({
  executablePath: '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu'],
});
try {
  const page = await browser.newPage({ viewport: { width: 800, height: 600 } });
  page.on('pageerror', (error) => console.error(error));
  await page.goto(`http://127.0.0.1:${server.address().port}/page.html`);
  await page.evaluate(() => customElements.whenDefined('zelkon-plot').then(() => {}));
  const stopProfiling = values.profile && (await startProfiling(page, values.profile));
  const results = await page.evaluate(measure, { runs, warmUps });
  if (stopProfiling) await stopProfiling();
  const line = (name, cells) => console.log(name.padEnd(36) + cells.map((cell) => cell.padStart(9)).join(''));
  line('milliseconds', ['median', '95 %', 'longest']);
  const row = (name, times) => {
    times.sort((a, b) => a - b);
    const at = (part) => times[Math.min(times.length - 1, Math.floor(times.length * part))];
    line(name, [at(0.5), at(0.95), at(1)].map((time) => time.toFixed(2)));
  };
  row('SetPlotData', results.data);
  row('SetPlotData and the first frame', results.first);
  row('frame of the opening', results.frames);
} finally {
  await browser.close();
  server.close();
}
