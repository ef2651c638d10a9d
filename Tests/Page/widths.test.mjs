// A chart whose box was dragged to a width shows what a page shows that has had that width from the beginning.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { PNG } from 'pngjs';
import { openBrowser, pictures } from './browser.mjs';

const names = ['January', 'February', 'March', 'April', 'May', 'June', 'July', 'August', 'September', 'October', 'November', 'December'];
const amounts = [812.4, 640.25, -120.5, 905.1, 1180.75, 760, 432.6, -310.2, 655.35, 1024.9, 890.15, 1499.99];

const month = (index) => ({
  humanX: `${names[index % 12]} ${2009 + Math.floor(index / 12)}`,
  mediumHumanX: `${names[index % 12].slice(0, 3)} ${2009 + Math.floor(index / 12)}`,
  shortHumanX: names[index % 12].slice(0, 3),
  shortHumanXSubtitle: String(2009 + Math.floor(index / 12)),
  humanY: `$${amounts[index % 12]}`,
  y: String(amounts[index % 12] + 3 * index),
});

const script = `
const options = [{ key: 'CurrencyID', value: 'USD' }];
const embed = (width, data) => {
  const chart = document.createElement('zelkon-plot');
  chart.setAttribute('plot', 'spendingOverTimeBarOrLine');
  chart.style.cssText = 'display: block; height: 300px; width: ' + width + 'px';
  document.body.replaceChildren(chart);
  chart.SetPlotOptions(options);
  chart.SetPlotData(data);
  return chart;
};
// Once every animation has ended and no frame is waited for.
const settled = async () => {
  const from = calls.length;
  while (!calls.slice(from).some(([name]) => name === 'GraphHasDisplayed')) await frames(1);
  await frames(3);
};
const picture = (chart) => {
  const canvas = chart.shadowRoot.querySelector('canvas');
  return canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
};
const words = ({ data }) => new Uint32Array(data.buffer);
const same = (a, b) => a.width === b.width && a.height === b.height && ((ours, theirs) => ours.every((pixel, index) => pixel === theirs[index]))(words(a), words(b));
const fresh = new Map();
// Texts painted on the screen and on pictures.
const texts = { screen: 0, pictures: 0 };
for (const [name, { prototype }] of [['screen', CanvasRenderingContext2D], ['pictures', OffscreenCanvasRenderingContext2D]]) {
  const { fillText } = prototype;
  prototype.fillText = function (...values) {
    ++texts[name];
    return fillText.apply(this, values);
  };
}
// The widths whose dragged picture is not the fresh one, the calls that the drag made, the least number of colours, and
// the texts painted by opening charts and by dragged ones.
const drag = async (data, widths) => {
  for (const width of widths) {
    const chart = embed(width, data);
    await settled();
    fresh.set(width, picture(chart));
  }
  const chart = embed(widths[0], data);
  await settled();
  const opened = { ...texts };
  const told = calls.length, wrong = [];
  for (const width of [...widths, ...widths.toReversed()]) {
    chart.style.width = width + 'px';
    await frames(4);
    if (!same(picture(chart), fresh.get(width))) wrong.push(width);
  }
  const dragged = { screen: texts.screen - opened.screen, pictures: texts.pictures - opened.pictures };
  return { wrong, told: calls.length - told, opened, dragged, colours: Math.min(...[...fresh.values()].map((each) => new Set(words(each)).size)) };
};
`;

test('a dragged box', async (context) => {
  const browser = await openBrowser(context);
  const widths = [];
  for (let width = 320; width <= 760; width += 37) widths.push(width);
  // The bars of a year need 560 points, so that this range has both charts; half a year are bars everywhere, and three
  // years a line.
  for (const [count, deviceScaleFactor, every] of [[12, 1, 1], [12, 2, 4], [6, 1, 3], [36, 1, 3], [36, 2, 6]]) {
    await context.test(`over ${count} months at scale ${deviceScaleFactor} shows what a fresh chart shows`, async () => {
      const tried = widths.filter((_, index) => index % every === 0);
      const page = await browser.open('', script, { deviceScaleFactor });
      const data = Array.from({ length: count }, (_, index) => month(index));
      const { colours, opened, dragged, ...result } = await page.evaluate(([data, widths]) => drag(data, widths), [data, tried]);
      for (const width of [tried[0], tried.at(-1)]) {
        const { columns, height, values } = await page.evaluate((width) => {
          const { width: columns, height, data } = fresh.get(width);
          return { columns, height, values: [...data] };
        }, width);
        const image = Object.assign(new PNG({ width: columns, height }), { data: Buffer.from(values) });
        writeFileSync(join(pictures, `width-${count}-${width}@${deviceScaleFactor}.png`), PNG.sync.write(image));
      }
      assert.deepEqual(result, { wrong: [], told: 0 });
      // A fresh chart is shown from pictures, as it moves, and a dragged one is painted straight onto the screen.
      assert.ok(opened.pictures > 0 && opened.screen === 0, JSON.stringify(opened));
      assert.ok(dragged.screen > 0 && dragged.pictures === 0, JSON.stringify(dragged));
      assert.ok(colours > 100, `only ${colours} colours: an empty chart proves nothing`);
      assert.deepEqual(page.lines.filter((line) => /uncaught|zelkon/.test(line)), []);
    });
  }

  await context.test('shows bars that keep their size from the pixels of before', async () => {
    const counter = `
const { fill } = OffscreenCanvasRenderingContext2D.prototype;
let fills = 0;
OffscreenCanvasRenderingContext2D.prototype.fill = function (...values) {
  ++fills;
  return fill.apply(this, values);
};
const fillsAfter = async (act) => {
  fills = 0;
  act();
  await frames(4);
  return fills;
};
`;
    const page = await browser.open('', script + counter, { reducedMotion: 'reduce' });
    const counts = await page.evaluate(async (data) => {
      const chart = embed(640, data);
      await settled();
      const wider = [];
      for (let width = 641; width < 647; ++width) wider.push(await fillsAfter(() => { chart.style.width = `${width}px`; }));
      const dragged = picture(chart);
      const higher = await fillsAfter(() => { chart.style.height = '310px'; });
      const other = embed(646, data);
      await settled();
      return { wider, higher, isSame: same(dragged, picture(other)) };
    }, Array.from({ length: 12 }, (_, index) => month(index)));
    assert.ok(counts.isSame);
    // Each of the twelve is filled once. A bar grows by a whole point after twelve of the box.
    assert.equal(counts.higher, 12);
    assert.ok(counts.wider.filter((count) => count > 0).length <= 1, `${counts.wider}`);
  });
});
