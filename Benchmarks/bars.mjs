// Times bars in Chromium: the main thread's work in "SetPlotData" with twelve months and the first frame, in each frame
// of the growing bars, and in a resize of the shown chart, of bars and of a line over 1,000 entries. Wider and narrower
// bars mostly keep their size; higher and lower they never do. Prints milliseconds: the least, the median, the 95th
// percentile and the longest.
//
// node Benchmarks/bars.mjs [--runs N] [--profile FILE]    the page's module must have been built into out/web
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

// Runs in the page before anything else. Work of the main thread is timed where the page hands over to the element:
// around "SetPlotData", around every callback of an animation frame and of a ResizeObserver.
function watch() {
  window.frameTimes = [];
  window.sizeTimes = [];
  const timed = (times, callback) => (...values) => {
    const start = performance.now();
    callback(...values);
    times.push(performance.now() - start);
  };
  const ask = window.requestAnimationFrame.bind(window);
  window.requestAnimationFrame = (callback) => ask(timed(window.frameTimes, callback));
  const Observer = window.ResizeObserver;
  window.ResizeObserver = class extends Observer {
    constructor(callback) {
      super(
        timed(window.sizeTimes, (...values) => {
          window.frameTimes.length = 0; // what answers a size comes after it
          callback(...values);
        }),
      );
    }
  };
}

// Runs in the page, as what follows.
async function show(count) {
  const chart = document.getElementById('chart');
  const months = ['January', 'February', 'March', 'April', 'May', 'June', 'July', 'August', 'September', 'October', 'November', 'December'];
  const entries = Array.from({ length: count }, (_, i) => {
    const [month, year] = [months[i % 12], `${1950 + Math.floor(i / 12)}`];
    const amount = (400 + ((i * 7919) % 1000)).toFixed(2);
    return {
      humanX: `${month} ${year}`,
      mediumHumanX: `${month.slice(0, 3)} ${year}`,
      shortHumanX: month.slice(0, 3),
      shortHumanXSubtitle: year,
      humanY: `$${amount}`,
      y: amount,
    };
  });
  // A chart put back into the page starts over and opens anew.
  const { parentNode } = chart;
  chart.remove();
  await new Promise((resolve) => setTimeout(resolve, 60));
  parentNode.append(chart);
  window.frameTimes.length = 0;
  const displayed = new Promise((resolve) => (window.GraphHasDisplayed = resolve));
  const start = performance.now();
  chart.SetPlotData(entries);
  const handedOver = performance.now() - start;
  await displayed;
  await new Promise((resolve) => setTimeout(resolve, 60));
  return { handedOver, frames: [...window.frameTimes] };
}

async function resize({ runs, warmUps, rest, side, from }) {
  const chart = document.getElementById('chart');
  const times = [];
  for (let run = -warmUps; run < runs; ++run) {
    window.frameTimes.length = window.sizeTimes.length = 0;
    chart.style[side] = `${from + ((run + warmUps) % 40)}px`;
    // The observer hears of the size after a frame, and the chart answers with the next one.
    while (window.sizeTimes.length === 0 || window.frameTimes.length === 0) await new Promise((resolve) => setTimeout(resolve, rest / 3));
    await new Promise((resolve) => setTimeout(resolve, rest));
    if (run >= 0) times.push([...window.sizeTimes, ...window.frameTimes].reduce((sum, time) => sum + time, 0));
  }
  chart.style[side] = '';
  return times;
}

const server = await serve([here, join(here, '..', 'out', 'web')]);
const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu'] });
const line = (name, cells) => console.log(name.padEnd(40) + cells.map((cell) => cell.padStart(9)).join(''));
const row = (name, times) => {
  times.sort((a, b) => a - b);
  const at = (part) => times[Math.min(times.length - 1, Math.floor(times.length * part))];
  line(name, [at(0), at(0.5), at(0.95), at(1)].map((time) => time.toFixed(2)));
};
try {
  const page = await browser.newPage({ viewport: { width: 800, height: 600 } });
  page.on('pageerror', (error) => console.error(error));
  await page.addInitScript(watch);
  await page.goto(`http://127.0.0.1:${server.address().port}/entries.html`);
  await page.evaluate(() => customElements.whenDefined('zelkon-plot').then(() => {}));
  for (let run = 0; run < warmUps; ++run) await page.evaluate(show, 12);
  const stopProfiling = values.profile && (await startProfiling(page, values.profile));
  const shown = [];
  for (let run = 0; run < runs; ++run) shown.push(await page.evaluate(show, 12));
  const resizes = {};
  for (const [name, side, from, rest] of [
    ['resize of the bars', 'width', 560, 60],
    ['resize of the bars, frame after frame', 'width', 560, 0],
    ['resize of the bars in height', 'height', 360, 60],
    ['same, frame after frame', 'height', 360, 0],
  ]) {
    resizes[name] = await page.evaluate(resize, { runs, warmUps, rest, side, from });
  }
  if (stopProfiling) await stopProfiling();
  await page.evaluate(show, 1000);
  const lineResizes = await page.evaluate(resize, { runs, warmUps, rest: 60, side: 'width', from: 560 });
  line('milliseconds', ['least', 'median', '95 %', 'longest']);
  row('SetPlotData', shown.map(({ handedOver }) => handedOver));
  row('SetPlotData and the first frame', shown.map(({ handedOver, frames }) => handedOver + frames[0]));
  row('frame of the growing bars', shown.flatMap(({ frames }) => frames.slice(1)));
  for (const [name, times] of Object.entries(resizes)) row(name, times);
  row('resize of a line over 1,000 entries', lineResizes);
} finally {
  await browser.close();
  server.close();
}
