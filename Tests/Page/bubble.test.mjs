// The tooltip bubble over amounts over time: where it stands, that it goes by every edge, and that paper never shows it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';

const chart = '<zelkon-plot id="pie" plot="spendingOverTimeBarOrLine"></zelkon-plot>';

const script = `
// Without labels at its sides: the plot of 300 by 200 points is then 243 by 104 and begins 33 from the left and 41 from
// the bottom.
const show = (count) => {
  pie.SetPlotOptions([{ key: 'DisplayXLabels', value: false }, { key: 'DisplayYLabels', value: false }]);
  pie.SetPlotData(Array.from({ length: count }, (_, i) => ({ humanX: 'Month ' + (i + 1), humanY: '$100', y: '100' })));
};
const told = async () => {
  while (calls.length === 0) await frames(1);
  await frames(3);
};
let rest;
const keepRest = () => { rest = pixels(pie); };
// The box in which the chart looks other than at rest, in points from the top left corner; null when nowhere.
const changed = () => {
  const now = pixels(pie), { width } = pie.shadowRoot.querySelector('canvas');
  let box = null;
  for (let i = 0; i < now.length; i += 4) {
    if (now[i] === rest[i] && now[i + 1] === rest[i + 1] && now[i + 2] === rest[i + 2] && now[i + 3] === rest[i + 3]) continue;
    const x = (i / 4) % width, y = Math.floor(i / 4 / width);
    box ??= { left: x, top: y, right: x, bottom: y };
    box.left = Math.min(box.left, x); box.right = Math.max(box.right, x);
    box.top = Math.min(box.top, y); box.bottom = Math.max(box.bottom, y);
  }
  return box;
};
const paper = () => pie.shadowRoot.querySelector('canvas.paper');
const paperPixel = (x, y) => [...paper().getContext('2d').getImageData(x * 4, y * 4, 1, 1).data];
`;

// 24 entries need 1160 points for bars, so they are a line: a point every 10.125, 102 above the bottom of the plot. Three
// bars of 27 stand in 243 points with gaps of 40, 104 high.
const charts = [
  { name: 'a line', count: 24, top: 102, at: (index) => ({ x: 33 + index * 10.125, y: 100 }) },
  { name: 'bars', count: 3, top: 104, at: (index) => ({ x: 33 + 40 + 13.5 + index * 67, y: 100 }) },
];

test('the bubble over amounts over time', async (context) => {
  const browser = await openBrowser(context);
  const begin = async (count) => {
    const page = await browser.open(chart, script, { reducedMotion: 'reduce' });
    await page.evaluate(`show(${count}), told()`);
    await page.evaluate('keepRest()');
    return page;
  };
  const bubble = async (page) => {
    await page.evaluate('frames(3)');
    return page.evaluate('changed()');
  };
  const print = async (page) => {
    await page.emulateMedia({ media: 'print' });
    await page.waitForTimeout(200);
  };

  for (const { name, count, top, at } of charts) {
    await context.test(`stands above its entry of ${name} until the pointer leaves by any edge`, async () => {
      const page = await begin(count);
      await page.evaluate('pie.style.margin = "50px"');
      const { x, y } = at(Math.floor(count / 2));
      for (const [outX, outY] of [[-1, 100], [301, 100], [150, -1], [150, 201]]) {
        await page.mouse.move(50 + x, 50 + y);
        const box = await bubble(page);
        assert.ok(box, 'no bubble');
        // Its middle over the entry and its tip 9 points above it; an edge and a shadow are around both.
        assert.ok(Math.abs((box.left + box.right + 1) / 2 - x) <= 2.5, `${JSON.stringify(box)} is not over ${x}`);
        assert.ok(Math.abs(box.bottom + 1 - (200 - 41 - top - 9)) <= 4, `${JSON.stringify(box)} is not 9 above ${top}`);
        await page.mouse.move(50 + outX, 50 + outY);
        assert.equal(await bubble(page), null, `by ${outX}, ${outY}`);
      }
      assert.deepEqual(await page.evaluate('calls'), [['GraphHasDisplayed']]);
    });

    await context.test(`is not on the paper of ${name}, which is whole while it opens and leaves the screen as it was`, async () => {
      const page = await begin(count);
      await print(page);
      const withoutBubble = await page.evaluate('paper().toDataURL()');
      await page.emulateMedia({ media: 'screen' });
      assert.equal(await bubble(page), null);
      const { x, y } = at(1);
      await page.mouse.move(x, y);
      assert.ok(await bubble(page));
      await print(page);
      assert.ok((await page.evaluate('paper().toDataURL()')) === withoutBubble, 'the bubble is on the paper');
      await page.emulateMedia({ media: 'screen' });
      await page.mouse.move(500, 500);
      assert.equal(await bubble(page), null);
      assert.deepEqual(await page.evaluate('calls'), [['GraphHasDisplayed']]);

      const opening = await browser.open(chart, script);
      await opening.evaluate(`show(${count}), frames(2)`);
      await print(opening);
      const last = at(count - 1);
      const color = await opening.evaluate(`paperPixel(${last.x - 5}, ${last.y})`);
      assert.ok(color[1] > color[2] + 20, `the last entry on paper is ${color}`);
      await opening.emulateMedia({ media: 'screen' });
      await opening.waitForTimeout(1300);
      assert.deepEqual(await opening.evaluate('calls'), [['GraphHasDisplayed']]);
    });
  }
});
