// What the page tests share: one Chromium, and pages of their own that a server hands out under the strictest content
// policy the element works with.
import assert from 'node:assert/strict';
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';
import { serve } from '../../Tools/serve.mjs';

export const root = join(dirname(fileURLToPath(import.meta.url)), '..', '..');
export const pictures = join(root, 'out', 'pictures');

export const flags = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'];

export async function openBrowser(context, options = {}) {
  const files = mkdtempSync(join(tmpdir(), 'zelkon-page-'));
  mkdirSync(pictures, { recursive: true });
  writeFileSync(join(files, 'favicon.ico'), '');
  const server = await serve([files, join(root, 'out', 'web'), join(root, 'Examples', 'Page'), join(root, 'node_modules', 'axe-core')]);
  const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: flags, ...options });
  const origin = `http://127.0.0.1:${server.address().port}`;
  context.after(async () => {
    await browser.close();
    server.close();
    rmSync(files, { recursive: true, force: true });
  });
  let lastPage = 0;
  return {
    origin,
    // A page with that body and script, once its elements are defined. The page notes each call of a chart in `calls`
    // and every error in `errors`; the console's lines are in `page.lines`.
    async open(body, script = '', contextOptions = {}) {
      const name = `page${++lastPage}`;
      writeFileSync(
        join(files, `${name}.html`),
        `<!DOCTYPE html><html lang="en"><head><title>${name}</title><link rel="stylesheet" href="${name}.css">` +
          `<script src="${name}.js"></script><script type="module" src="zelkon-plot.js"></script></head><body>${body}</body></html>`,
      );
      writeFileSync(join(files, `${name}.css`), 'body { margin: 0 } #pie { width: 300px; height: 200px; display: block }');
      writeFileSync(join(files, `${name}.js`), recorder + script);
      const page = await openPage(browser, contextOptions);
      await page.goto(`${origin}/${name}.html`);
      await page.evaluate(() => customElements.whenDefined('zelkon-plot').then(() => {}));
      return page;
    },
    async openPath(path, contextOptions = {}) {
      const page = await openPage(browser, contextOptions);
      await page.goto(`${origin}/${path}`);
      await page.evaluate(() => customElements.whenDefined('zelkon-plot').then(() => {}));
      return page;
    },
  };
}

async function openPage(browser, contextOptions) {
  const context = await browser.newContext({ viewport: { width: 800, height: 600 }, ...contextOptions });
  const page = await context.newPage();
  page.lines = [];
  page.on('console', (message) => page.lines.push(message.text()));
  page.on('pageerror', (error) => page.lines.push(`uncaught ${error.message}`));
  return page;
}

const recorder = `
var calls = [], errors = [];
addEventListener('error', (event) => errors.push(event.message));
addEventListener('securitypolicyviolation', (event) => errors.push('policy: ' + event.violatedDirective));
for (const name of ['GraphHasDisplayed', 'SpendingTrendsHaveDisplayed', 'SpendingTrendsSliceHoverIndex', 'SpendingTrendsSliceClicked'])
  window[name] = (...values) => { calls.push([name, ...values]); };
const three = [{ key: 'Rent', value: 1200 }, { key: 'Groceries', value: 500 }, { key: 'Leisure', value: 300 }];
const displayed = () => new Promise((resolve) => {
  const check = () => calls.some(([name]) => /HaveDisplayed/.test(name)) ? resolve() : setTimeout(check, 10);
  check();
});
const frames = async (count) => { while (count-- > 0) await new Promise(requestAnimationFrame); };
const start = async (data = three) => {
  pie.SetPlotData(data);
  await displayed();
  await frames(2);
};
// The colour at a point of the canvas, counted in points from its top left corner.
const pixel = (element, x, y) => {
  const canvas = element.shadowRoot.querySelector('canvas');
  const scale = canvas.width / canvas.clientWidth;
  return [...canvas.getContext('2d').getImageData(Math.floor(x * scale), Math.floor(y * scale), 1, 1).data];
};
const pixels = (element) => {
  const canvas = element.shadowRoot.querySelector('canvas');
  return [...canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data];
};
`;

export function assertNear(actual, expected, tolerance, message) {
  assert.equal(actual.length, expected.length, message);
  const worst = actual.findIndex((value, index) => !(Math.abs(value - expected[index]) <= tolerance));
  if (worst < 0) return;
  const from = Math.max(0, worst - 4);
  assert.fail(`${message}: from ${from}, ${actual.slice(from, from + 8)} instead of ${expected.slice(from, from + 8)}`);
}

// What the page keeps alive once its garbage is collected.
export async function metricsOf(page) {
  const client = await page.context().newCDPSession(page);
  await client.send('HeapProfiler.enable');
  await client.send('Performance.enable');
  for (let round = 0; round < 4; ++round) {
    await client.send('HeapProfiler.collectGarbage');
    await page.waitForTimeout(50);
  }
  const { metrics } = await client.send('Performance.getMetrics');
  const value = (name) => metrics.find((metric) => metric.name === name).value;
  return { listeners: value('JSEventListeners'), nodes: value('Nodes'), heap: value('JSHeapUsedSize') };
}
