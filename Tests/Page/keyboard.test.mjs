import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';

const outside = 2 ** 63;
const hover = (...values) => ['SpendingTrendsSliceHoverIndex', ...values];

test('the keyboard', async (context) => {
  const browser = await openBrowser(context);
  const begin = async (attributes = '') => {
    const page = await browser.open(`<zelkon-plot id="pie" plot="pie" ${attributes}></zelkon-plot><button id="next">Next</button>`);
    await page.evaluate('start()');
    await page.evaluate('calls.length = 0');
    return page;
  };
  const press = async (page, ...keys) => {
    for (const key of keys) await page.keyboard.press(key);
  };

  await context.test('goes from slice to slice with the calls of a pointer', async () => {
    const page = await begin();
    await press(page, 'Tab', 'ArrowRight', 'ArrowDown', 'Enter', 'ArrowLeft', 'ArrowUp', 'End', 'Home', ' ', 'Escape');
    assert.deepEqual(await page.evaluate('calls'), [
      hover(0, outside),
      hover(1, 0),
      ['SpendingTrendsSliceClicked', 1],
      hover(0, 1),
      hover(2, 0),
      hover(0, 2),
      ['SpendingTrendsSliceClicked', 0],
      hover(-1, -1),
    ]);
  });

  await context.test('leaves the slice with the focus', async () => {
    const page = await begin();
    await press(page, 'Tab', 'ArrowRight', 'Tab');
    assert.deepEqual(await page.evaluate('calls'), [hover(0, outside), hover(-1, -1)]);
    assert.equal(await page.evaluate(() => document.activeElement.id), 'next');
  });

  await context.test('lets a screen reader hear the chart and each slice', async () => {
    const page = await begin('aria-label="Spending in May"');
    await press(page, 'Tab', 'ArrowRight');
    const heard = () => page.evaluate(() => pie.shadowRoot.querySelector('[aria-live]').textContent);
    assert.equal(await heard(), 'Rent, 1,200, 60%');
    await press(page, 'ArrowRight');
    assert.equal(await heard(), 'Groceries, 500, 25%');
    await press(page, 'Escape');
    assert.equal(await heard(), '');
    assert.equal(await page.evaluate(() => pie.shadowRoot.querySelector('canvas').getAttribute('aria-label')), 'Spending in May');
  });

  await context.test('keeps its slice when the chart is drawn for another size', async () => {
    const page = await begin();
    await press(page, 'Tab', 'ArrowRight', 'ArrowRight');
    await page.evaluate('pie.style.width = "500px", pie.style.height = "400px", frames(4)');
    await press(page, 'ArrowRight');
    assert.deepEqual(await page.evaluate('calls'), [hover(0, outside), hover(1, 0), hover(2, 1)]);
  });

  await context.test('does nothing where there is nothing, and nothing at all for a page that asks for that', async () => {
    const page = await begin('no-keyboard');
    await press(page, 'Tab', 'ArrowRight', 'Enter');
    assert.equal(await page.evaluate(() => document.activeElement.id), 'next');
    assert.deepEqual(await page.evaluate('calls'), []);
    await page.evaluate('pie.removeAttribute("no-keyboard"), pie.SetPlotData([]), pie.focus()');
    await press(page, 'ArrowRight', 'Enter', 'End', 'Escape');
    assert.deepEqual(await page.evaluate('errors'), []);
  });
});
