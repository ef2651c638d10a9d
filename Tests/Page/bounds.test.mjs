// How many entries a page may hand over: so many, and not one more.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';
import { script as digests } from './overtime.mjs';

const most = 1_048_576;
const kinds = {
  pie: {
    entry: '({ key: "Rent", value: 1 })',
    guard: 'Exception thrown while processing javascript bridge at [PiePlotView js_setPlotData:].',
    displayed: 'SpendingTrendsHaveDisplayed',
  },
  spendingOverTimeBarOrLine: {
    entry: '({ humanX: "May", humanY: "$1", y: "1" })',
    guard: 'Exception thrown while processing javascript bridge at [SpendingOverTimeBarView js_setPlotData:].',
    displayed: 'GraphHasDisplayed',
  },
};
const refused = `The page threw while its data was read: RangeError: The array has more than ${most} elements.`;
const isReported = (line) => !line.startsWith('Canvas2D: ');

test('entries without number', async (context) => {
  const browser = await openBrowser(context);
  for (const [plot, { entry, guard, displayed }] of Object.entries(kinds)) {
    // Arrays of one entry over and over, as far as they are asked for.
    const script = `
      const entry = ${entry};
      const repeated = (count) => new Proxy([], { get: (_, index) => index < count ? entry : undefined });
      const thereAndBack = async () => {
        for (const width of ['320px', '300px']) {
          pie.style.width = width;
          await frames(3);
        }
        return picture(pie);
      };
      ${digests}
    `;
    const open = async () => {
      const page = await browser.open(`<zelkon-plot id="pie" plot="${plot}"></zelkon-plot>`, script, { reducedMotion: 'reduce' });
      await page.evaluate('frames(3)');
      await page.evaluate('calls.length = 0');
      return page;
    };

    await context.test(`${plot}: as many as are allowed are read`, async () => {
      const page = await open();
      await page.evaluate(`pie.SetPlotOptions(repeated(${most}))`);
      // A million slices that are shown take more memory than a module can have.
      if (plot === 'pie') await page.evaluate('pie.style.display = "none", pie.setAttribute("plot", "pie"), calls.length = 0');
      await page.evaluate(`pie.SetPlotData([...Array(${most}).fill(entry), undefined, entry]), frames(6)`);
      assert.deepEqual(page.lines.filter(isReported), []);
      assert.deepEqual(await page.evaluate('calls'), plot === 'pie' ? [] : [[displayed]]);
    });

    await context.test(`${plot}: one more, and an array without end, are refused in words, and the earlier chart stays`, async () => {
      const page = await open();
      await page.evaluate(`pie.SetPlotData([entry, entry, entry]), frames(6)`);
      const before = await page.evaluate('thereAndBack()');
      for (const count of [most + 1, Infinity]) {
        page.lines.length = 0;
        await page.evaluate(`pie.SetPlotData(repeated(${count})), frames(6)`);
        assert.deepEqual(page.lines.filter(isReported), [guard, refused], String(count));
        assert.equal(await page.evaluate('thereAndBack()'), before, String(count));
        page.lines.length = 0;
        await page.evaluate(`pie.SetPlotOptions(repeated(${count}))`);
        assert.deepEqual(page.lines.filter(isReported), [guard.replace('Data', 'Options'), refused], String(count));
      }
    });
  }
});
