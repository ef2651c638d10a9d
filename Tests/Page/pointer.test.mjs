import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';
import { bisectorPoint } from './pie.mjs';

const fractions = [0.6, 0.25, 0.15];
const slice = (index, part = 0.5) => bisectorPoint(fractions, index, 300, 200, part);
const outside = 2 ** 63;
const hover = (...values) => ['SpendingTrendsSliceHoverIndex', ...values];
const pie = '<zelkon-plot id="pie" plot="pie"></zelkon-plot>';

test('the pointer', async (context) => {
  const browser = await openBrowser(context);
  const begin = async (body = pie, options = {}, script = '') => {
    const page = await browser.open(body, script, options);
    await page.evaluate('start()');
    await page.evaluate('calls.length = 0');
    return page;
  };
  const move = (page, { x, y }, left = 0, top = 0) => page.mouse.move(left + x, top + y);

  await context.test('tells the page of each slice that it comes to, leaves and clicks', async () => {
    const page = await begin();
    await move(page, slice(1));
    await move(page, slice(1, 0.6));
    await move(page, slice(2));
    await move(page, slice(0));
    await page.mouse.down();
    await page.mouse.up();
    await page.mouse.move(2, 2);
    await page.mouse.down();
    await page.mouse.up();
    await page.mouse.move(500, 400);
    assert.deepEqual(await page.evaluate('calls'), [
      hover(1, outside),
      hover(2, 1),
      hover(0, 2),
      ['SpendingTrendsSliceClicked', 0],
      hover(-1, 0),
      hover(-1, -1),
    ]);
  });

  await context.test('finds its slice where the element is moved, scaled and turned', async () => {
    const bodies = {
      'margin: 40px 0 0 60px': [60, 40, 1],
      'transform: scale(0.5); transform-origin: 0 0': [0, 0, 0.5],
      'zoom: 1.5': [0, 0, 1.5],
      'position: relative; left: 100px; top: 30px; border: 7px solid; padding: 5px; box-sizing: content-box': [112, 42, 1],
    };
    for (const [style, [left, top, scale]] of Object.entries(bodies)) {
      const page = await begin(pie);
      await page.evaluate((style) => { pie.style.cssText = style; }, style);
      await page.waitForTimeout(200);
      for (const index of [1, 2]) {
        const { x, y } = slice(index);
        await page.mouse.move(left + x * scale, top + y * scale);
        assert.equal((await page.evaluate('calls')).at(-1)?.[1], index, style);
      }
    }
    const turned = await begin(pie);
    await turned.evaluate(() => { pie.style.transform = 'rotate(180deg)'; });
    const { x, y } = slice(2);
    await turned.mouse.move(300 - x, 200 - y);
    assert.equal((await turned.evaluate('calls')).at(-1)?.[1], 2, 'turned');
  });

  await context.test('finds its slice inside a scroller and at other scales', async () => {
    for (const deviceScaleFactor of [1, 1.25, 2, 3]) {
      const page = await begin(
        '<div id="box"><div id="inner"><zelkon-plot id="pie" plot="pie"></zelkon-plot></div></div>',
        { deviceScaleFactor },
      );
      await page.evaluate(() => {
        box.style.cssText = 'height: 150px; overflow: auto';
        inner.style.cssText = 'padding-top: 300px; height: 900px';
        box.scrollTop = 280;
      });
      await page.waitForTimeout(100);
      await move(page, slice(1, 0.3), 0, 20);
      assert.deepEqual((await page.evaluate('calls')).at(-1), hover(1, outside), String(deviceScaleFactor));
    }
  });

  await context.test('finds its slice where the page has moved the element into view without scrolling', async () => {
    const page = await begin('<div id="above"></div><zelkon-plot id="pie" plot="pie"></zelkon-plot>');
    await page.evaluate(async () => {
      above.style.height = '2000px';
      const kept = pie;
      kept.remove();
      document.body.append(kept);
      kept.SetPlotData(three);
      await frames(30);
      above.remove();
      calls.length = 0;
    });
    await move(page, slice(1));
    assert.deepEqual((await page.evaluate('calls')).at(-1), hover(1, outside));
  });

  await context.test('finds its slice in a shadow tree and in a frame', async () => {
    const inTree = await browser.open('<div id="host"></div>');
    await inTree.evaluate(async () => {
      const made = document.createElement('zelkon-plot');
      made.setAttribute('plot', 'pie');
      made.style.cssText = 'display: block; width: 300px; height: 200px; margin: 25px';
      host.attachShadow({ mode: 'closed' }).append(made);
      made.SetPlotData(three);
      await displayed();
      calls.length = 0;
    });
    await move(inTree, slice(1), 25, 25);
    assert.deepEqual(await inTree.evaluate('calls'), [hover(1, outside)]);

    const within = new URL((await browser.open(pie)).url()).pathname;
    const inFrame = await browser.open('<iframe id="frame"></iframe>');
    await inFrame.evaluate(async (within) => {
      frame.style.cssText = 'border: 0; width: 400px; height: 300px; margin: 30px 0 0 20px';
      await new Promise((resolve) => {
        frame.onload = resolve;
        frame.src = within;
      });
    }, within);
    const inner = inFrame.frames()[1];
    await inner.evaluate(() => customElements.whenDefined('zelkon-plot').then(() => start()));
    await inner.evaluate('calls.length = 0');
    await move(inFrame, slice(2), 20, 30);
    assert.deepEqual(await inner.evaluate('calls'), [hover(2, outside)]);
    assert.deepEqual(await inFrame.evaluate('calls'), [], 'the outer page is not the chart\'s');
  });

  await context.test('hears that it left while a button was held', async () => {
    const page = await begin();
    await move(page, slice(0));
    await page.mouse.down();
    await page.mouse.move(600, 500);
    await page.mouse.up();
    assert.deepEqual((await page.evaluate('calls')).at(-1), hover(-1, -1));
  });

  await context.test('leaves a slice hovered after a tap, until the next touch elsewhere', async () => {
    const page = await begin(pie, { hasTouch: true });
    const { x, y } = slice(1);
    await page.touchscreen.tap(x, y);
    assert.deepEqual(await page.evaluate('calls'), [hover(1, outside), ['SpendingTrendsSliceClicked', 1]]);
    await page.touchscreen.tap(500, 400);
    assert.deepEqual((await page.evaluate('calls')).at(-1), hover(-1, -1));
  });

  await context.test('may be over an element that goes', async () => {
    const page = await begin();
    await move(page, slice(0));
    await page.evaluate(() => pie.remove());
    await page.mouse.move(10, 10);
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('costs at most one frame a move and only the calls that are due', async () => {
    const page = await begin();
    const count = await page.evaluate(async () => {
      let asked = 0;
      const original = requestAnimationFrame;
      window.requestAnimationFrame = (callback) => (++asked, original(callback));
      const canvas = pie.shadowRoot.querySelector('canvas');
      const fire = (type, x, y) => canvas.dispatchEvent(new PointerEvent(type, { clientX: x, clientY: y, isPrimary: true, pointerType: 'mouse' }));
      for (let i = 0; i < 10000; ++i) fire('pointermove', 100 + (i % 20), 60);
      await frames(2);
      return asked;
    });
    assert.ok(count <= 10, `${count} frames`);
    assert.deepEqual(await page.evaluate('calls'), [hover(0, outside)]);
  });
});
