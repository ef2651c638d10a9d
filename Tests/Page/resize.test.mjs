import assert from 'node:assert/strict';
import { join } from 'node:path';
import { test } from 'node:test';
import { assertNear, openBrowser, pictures } from './browser.mjs';
import { bisectorPoint, glossed, threeColors } from './pie.mjs';

const fractions = [0.6, 0.25, 0.15];
const pie = '<zelkon-plot id="pie" plot="pie"></zelkon-plot>';

// Frames of the page come only when the test asks for them, at times that it gives.
const handDriven = `
let clock = 0, waiting = [];
window.requestAnimationFrame = (callback) => waiting.push(callback);
window.cancelAnimationFrame = () => { waiting = []; };
const tick = (milliseconds) => { clock += milliseconds; for (const each of waiting.splice(0)) each(clock); };
`;

test('size, motion and paper', async (context) => {
  const browser = await openBrowser(context);
  const begin = async (options = {}) => {
    const page = await browser.open(pie, '', options);
    await page.evaluate('start()');
    return page;
  };
  const assertFinished = async (page, width, height, canvas = 'pie') => {
    for (const index of [0, 1, 2]) {
      const point = bisectorPoint(fractions, index, width, height);
      const actual = await page.evaluate(`pixel(${canvas}, ${point.x}, ${point.y})`);
      assertNear(actual, [...glossed(threeColors[index], point, width, height), 255], 4, `slice ${index} at ${width} by ${height}`);
    }
  };

  for (const deviceScaleFactor of [1, 2]) {
    await context.test(`opens turning and growing, at scale ${deviceScaleFactor}`, async () => {
      const page = await browser.open(pie, handDriven, { deviceScaleFactor });
      await page.evaluate('pie.SetPlotData(three), tick(0)');
      // In the middle of the quarter of a second the default curve has come to 0.80: a turn of 35.6 degrees is left.
      await page.evaluate('tick(62.5), tick(62.5)');
      await page.screenshot({ path: join(pictures, `opening-middle@${deviceScaleFactor}.png`) });
      const beyond = bisectorPoint([1], 0, 300, 200, 0.9);
      assert.equal((await page.evaluate(`pixel(pie, ${beyond.x}, ${beyond.y})`))[3], 0, 'the rim is not reached yet');
      assert.deepEqual(await page.evaluate('calls'), []);
      await page.evaluate('tick(62.5), tick(62.5), tick(1)');
      await page.screenshot({ path: join(pictures, `opening-end@${deviceScaleFactor}.png`) });
      assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
      assert.equal(await page.evaluate(() => pie.shadowRoot.querySelector('canvas').width), 300 * deviceScaleFactor);
      await assertFinished(page, 300, 200);
      assert.equal(await page.evaluate('waiting.length'), 0);
    });
  }

  await context.test('draws the chart anew for a new size, without a word to the page', async () => {
    const page = await begin();
    await page.evaluate('pie.style.width = "420px", pie.style.height = "320px", frames(4)');
    await assertFinished(page, 420, 320);
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
  });

  await context.test('comes back from no size at all', async () => {
    const page = await begin();
    await page.evaluate('pie.style.display = "none", frames(3)');
    await page.evaluate('pie.style.display = "block", frames(4)');
    await assertFinished(page, 300, 200);
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
  });

  await context.test('opens when a hidden element is first shown', async () => {
    const page = await browser.open(pie);
    await page.evaluate('pie.style.display = "none"');
    await page.evaluate(() => {
      const kept = pie;
      kept.remove();
      document.body.append(kept);
      calls.length = 0;
      kept.SetPlotData(three);
    });
    await page.waitForTimeout(400);
    assert.deepEqual(await page.evaluate('calls'), []);
    await page.evaluate('pie.style.display = "block", displayed().then(() => frames(2))');
    await assertFinished(page, 300, 200);
  });

  await context.test('a resize during the opening shows its end and tells the page once', async () => {
    const page = await browser.open(pie);
    await page.evaluate('pie.SetPlotData(three), frames(4)');
    await page.evaluate('pie.style.width = "340px", displayed().then(() => frames(4))');
    await page.waitForTimeout(400);
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
    await assertFinished(page, 340, 200);
  });

  await context.test('a resize while hovering keeps what is under the pointer hovered', async () => {
    const page = await begin();
    const { x, y } = bisectorPoint(fractions, 1, 300, 200, 0.3);
    await page.mouse.move(x, y);
    await page.evaluate('pie.style.width = "301px", frames(4)');
    const calls = await page.evaluate('calls');
    await page.mouse.move(500, 500);
    assert.deepEqual((await page.evaluate('calls')).slice(calls.length), [['SpendingTrendsSliceHoverIndex', -1, -1]]);
    assert.equal(calls.length, 2);
  });

  await context.test('a resize while what is hovered still moves is silent too', async () => {
    const page = await browser.open(pie, handDriven);
    await page.evaluate('pie.SetPlotData(three), tick(0), tick(300), tick(16), tick(16)');
    const { x, y } = bisectorPoint(fractions, 1, 300, 200, 0.3);
    await page.mouse.move(x, y);
    await page.evaluate('tick(16), tick(50)');
    assert.ok((await page.evaluate('waiting.length')) > 0, 'it moves');
    const calls = await page.evaluate('calls');
    assert.equal(calls.length, 2);
    await page.evaluate('pie.style.width = "340px", new Promise((resolve) => setTimeout(resolve, 200))');
    await page.evaluate('tick(16)');
    const atOnce = await page.evaluate('pixels(pie)');
    await page.evaluate('tick(16), tick(400), tick(16), tick(16)');
    assertNear(await page.evaluate('pixels(pie)'), atOnce, 24, 'the first picture is the last');
    assert.deepEqual(await page.evaluate('calls'), calls);
  });

  await context.test('a box that is dragged makes at most one view a frame', async () => {
    const page = await begin();
    await page.evaluate('(async () => { for (let i = 0; i < 60; ++i) { pie.style.width = 300 + i + "px"; pie.offsetWidth; await frames(1); } await frames(3); })()');
    await assertFinished(page, 359, 200);
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
  });

  await context.test('readers who want less motion see the end at once, and the page hears at once', async () => {
    const page = await browser.open(pie, handDriven, { reducedMotion: 'reduce' });
    await page.evaluate('pie.SetPlotData(three), tick(0), tick(16)');
    assert.deepEqual(await page.evaluate('calls'), [['SpendingTrendsHaveDisplayed']]);
    await assertFinished(page, 300, 200);
  });

  await context.test('paper gets a flat, sharp pie without the gloss, and the screen is as before', async () => {
    const page = await begin();
    const before = await page.evaluate('pixels(pie)');
    // A rim that is drawn from a kept picture may be softer by a little than one drawn anew.
    const assertUntouched = async () => assertNear(await page.evaluate('pixels(pie)'), before, 24, 'the screen');
    await page.emulateMedia({ media: 'print' });
    await page.waitForTimeout(200);
    const paper = await page.evaluate(() => {
      const canvas = pie.shadowRoot.querySelector('canvas.paper');
      return { width: canvas.width, height: canvas.height, shown: canvas.clientWidth };
    });
    assert.deepEqual(paper, { width: 1200, height: 800, shown: 300 });
    for (const index of [0, 1, 2]) {
      const { x, y } = bisectorPoint(fractions, index, 300, 200);
      const at = [x, y].map((each) => Math.floor(each * 4));
      const actual = await page.evaluate(([x, y]) => [...pie.shadowRoot.querySelector('canvas.paper').getContext('2d').getImageData(x, y, 1, 1).data], at);
      assertNear(actual, [...threeColors[index].map((part) => part * 255), 255], 1.5, `slice ${index} on paper`);
    }
    await page.screenshot({ path: join(pictures, 'paper.png') });
    await page.emulateMedia({ media: 'screen' });
    await page.waitForTimeout(200);
    assert.equal(await page.evaluate(() => pie.shadowRoot.querySelector('canvas.paper')), null);
    await assertUntouched();
    const pdf = await page.pdf({ path: join(pictures, 'paper.pdf') });
    // The browser keeps the chart as drawing: more than an empty page, less than a picture of it.
    assert.ok(pdf.length > 3000 && pdf.length < 100_000, `${pdf.length} bytes`);
    await assertUntouched();
  });

  await context.test('paper shows the label of a hovered slice, and a chart that is still opening whole', async () => {
    const page = await begin({ deviceScaleFactor: 2 });
    const { x, y } = bisectorPoint(fractions, 0, 300, 200);
    await page.mouse.move(x, y);
    await page.waitForTimeout(500);
    await page.screenshot({ path: join(pictures, 'hovered@2.png'), clip: { x: 0, y: 0, width: 300, height: 200 } });
    await page.emulateMedia({ media: 'print' });
    await page.waitForTimeout(200);
    await page.screenshot({ path: join(pictures, 'paper-hovered@2.png'), clip: { x: 0, y: 0, width: 300, height: 200 } });
    // The label's own middle lies on the bisector at 0.66 of the radius: a translucent white on the slice.
    const label = bisectorPoint(fractions, 0, 300, 200, 0.66);
    const at = [label.x - 17, label.y].map((each) => Math.floor(each * 4));
    const onPaper = (at) =>
      page.evaluate(([x, y]) => [...pie.shadowRoot.querySelector('canvas.paper').getContext('2d').getImageData(x, y, 1, 1).data], at);
    const expected = threeColors[0].map((part) => 255 * (0.4 * part + 0.6));
    assertNear(await onPaper(at), [...expected, 255], 3, 'label');
    await page.emulateMedia({ media: 'screen' });

    const opening = await browser.open(pie, handDriven);
    await opening.evaluate('pie.SetPlotData(three), tick(0), tick(60)');
    await opening.emulateMedia({ media: 'print' });
    await opening.waitForTimeout(100);
    const rim = bisectorPoint(fractions, 1, 300, 200, 0.95);
    const color = await opening.evaluate(
      ([x, y]) => [...pie.shadowRoot.querySelector('canvas.paper').getContext('2d').getImageData(x, y, 1, 1).data],
      [rim.x, rim.y].map((each) => Math.floor(each * 4)),
    );
    assertNear(color, [...threeColors[1].map((part) => part * 255), 255], 1.5, 'a slice of the opening pie');
  });
});
