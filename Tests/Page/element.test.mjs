import assert from 'node:assert/strict';
import { test } from 'node:test';
import { assertNear, openBrowser } from './browser.mjs';
import { bisectorPoint, glossed, threeColors } from './pie.mjs';

const pie = '<zelkon-plot id="pie" plot="pie"></zelkon-plot>';
const displayedOnce = (calls) => calls.filter(([name]) => name === 'SpendingTrendsHaveDisplayed').length === 1;

test('the element', async (context) => {
  const browser = await openBrowser(context);

  await context.test('works under the strictest content policy and tells the page once that it has displayed', async () => {
    const page = await browser.open(pie);
    await page.evaluate('start()');
    await page.waitForTimeout(400);
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('has the four methods of the chart and no other name of its own', async () => {
    const page = await browser.open(pie);
    const names = await page.evaluate(() => Object.getOwnPropertyNames(Object.getPrototypeOf(pie)).sort());
    const chart = ['HoverEntryAtIndex', 'SetPlotData', 'SetPlotOptions', 'SliceColorAtIndex'];
    const element = ['attributeChangedCallback', 'connectedCallback', 'connectedMoveCallback', 'constructor', 'disconnectedCallback'];
    assert.deepEqual(names, [...chart, ...element]);
    assert.deepEqual(await page.evaluate(() => Object.keys(pie)), []);
  });

  await context.test('shows each slice in its colour under the gloss', async () => {
    const page = await browser.open(pie);
    await page.evaluate('start()');
    const fractions = [0.6, 0.25, 0.15];
    for (const index of [0, 1, 2]) {
      const point = bisectorPoint(fractions, index, 300, 200);
      const actual = await page.evaluate(`pixel(pie, ${point.x}, ${point.y})`);
      assertNear(actual, [...glossed(threeColors[index], point, 300, 200), 255], 4, `slice ${index}`);
    }
    assertNear(await page.evaluate('pixel(pie, 2, 2)'), [0, 0, 0, 0], 0, 'corner');
  });

  await context.test('shows an empty pie as one grey disc', async () => {
    const page = await browser.open(pie);
    await page.evaluate('start([])');
    const point = bisectorPoint([1], 0, 300, 200);
    assertNear(await page.evaluate(`pixel(pie, ${point.x}, ${point.y})`), [...glossed([0.55, 0.55, 0.55], point, 300, 200), 255], 4, 'disc');
  });

  await context.test('gives the page a slice colour through its own object', async () => {
    const page = await browser.open(pie);
    const color = await page.evaluate(() => {
      const color = {};
      pie.SliceColorAtIndex(1, 3, color);
      return color;
    });
    assert.deepEqual(Object.keys(color), ['red', 'green', 'blue', 'alpha']);
    assertNear(Object.values(color), [...threeColors[1], 1], 1e-4, 'colour');
  });

  await context.test('highlights a slice for the page without calling it', async () => {
    const page = await browser.open(pie);
    await page.evaluate('start()');
    const { x, y } = bisectorPoint([0.6, 0.25, 0.15], 1, 300, 200, 0.2);
    const before = await page.evaluate(`pixel(pie, ${x}, ${y})`);
    await page.evaluate('pie.HoverEntryAtIndex(true, 1)');
    await page.waitForTimeout(400);
    const hovered = await page.evaluate(`pixel(pie, ${x}, ${y})`);
    assert.ok(hovered[0] > before[0] + 15, `${before} became ${hovered}`);
    await page.evaluate('pie.HoverEntryAtIndex(true, -1)');
    await page.waitForTimeout(400);
    assertNear(await page.evaluate(`pixel(pie, ${x}, ${y})`), before, 1, 'cleared');
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
  });

  await context.test('upgrades old embeds in place, with their attributes', async () => {
    const page = await browser.open(
      '<embed id="pie" class="chart" type="application/x-zelkon-plot" plot="pie" width="300" height="200">' +
        '<object id="second" type="application/x-zelkon-plot" plot="pie" width="50%" height="120"></object>',
    );
    const found = await page.evaluate(() =>
      ['pie', 'second'].map((id) => {
        const { localName, className, offsetWidth, offsetHeight } = document.getElementById(id);
        return [localName, className, offsetWidth, offsetHeight];
      }),
    );
    assert.deepEqual(found, [['zelkon-plot', 'chart', 300, 200], ['zelkon-plot', '', 400, 120]]);
    await page.evaluate('start()');
    assert.equal((await page.evaluate('pixel(pie, 150, 60)'))[3], 255);
    await page.evaluate(() => {
      const late = document.createElement('embed');
      Object.entries({ id: 'late', type: 'application/x-zelkon-plot', plot: 'pie' }).forEach(([name, value]) => late.setAttribute(name, value));
      document.body.append(late);
    });
    assert.equal(await page.evaluate(() => document.getElementById('late').localName), 'zelkon-plot');
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('shows its own contents and logs the reason for a plot that it does not know', async () => {
    const page = await browser.open('<zelkon-plot id="pie" plot="Pie"><p id="inside">No chart</p></zelkon-plot><zelkon-plot id="none">Nothing</zelkon-plot>');
    assert.ok(await page.locator('#inside').isVisible());
    await page.evaluate('pie.SetPlotData(three), pie.SliceColorAtIndex(0, 1, {})');
    assert.ok(page.lines.some((line) => line.includes('Unknown plotName parameter "Pie"')), page.lines.join('\n'));
    assert.ok(page.lines.some((line) => line.includes('Unknown plotName parameter "(null)"')));
    await page.evaluate(() => pie.setAttribute('plot', 'pie'));
    assert.ok(!(await page.locator('#inside').isVisible()));
    await page.evaluate('start()');
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('starts over when it is put back or its plot is set again', async () => {
    const page = await browser.open(pie);
    await page.evaluate('start()');
    await page.evaluate(() => {
      const { parentNode } = pie;
      const kept = pie;
      kept.remove();
      parentNode.append(kept);
    });
    await page.evaluate('calls.length = 0, frames(3)');
    // The gloss of a pie that waits for data may be there, and has no colour.
    const [red, green, blue] = await page.evaluate('pixel(pie, 150, 60)');
    assertNear([red, green], [green, blue], 1, 'the old data is gone');
    await page.evaluate('start()');
    assert.ok(displayedOnce(await page.evaluate('calls')));
    await page.evaluate('pie.setAttribute("plot", "pie"), calls.length = 0, start()');
    assert.ok(displayedOnce(await page.evaluate('calls')));
  });

  await context.test('stands beside others, each with its own data', async () => {
    const page = await browser.open(pie + '<zelkon-plot id="other" plot="pie"></zelkon-plot>');
    await page.evaluate('other.SetPlotData([]), start()');
    await page.waitForTimeout(300);
    const calls = await page.evaluate('calls');
    assert.equal(calls.length, 2);
    const grey = await page.evaluate('pixel(other, 150, 40)');
    assertNear([grey[0], grey[1]], [grey[1], grey[2]], 1, 'grey');
    const blue = await page.evaluate('pixel(pie, 150, 60)');
    assert.ok(blue[2] > blue[0] + 60);
  });

  await context.test('asks for no frame at rest', async () => {
    const page = await browser.open(
      pie,
      'let asked = 0; const original = requestAnimationFrame; window.requestAnimationFrame = (f) => { ++asked; return original(f); };',
    );
    await page.evaluate('start()');
    await page.waitForTimeout(300);
    await page.evaluate('asked = 0');
    await page.waitForTimeout(500);
    assert.equal(await page.evaluate('asked'), 0);
  });
});
