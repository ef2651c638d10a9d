import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';

const pie = '<zelkon-plot id="pie" plot="pie"></zelkon-plot>';
// Once an opening would be over.
const isShown = async (page) => {
  await page.waitForTimeout(400);
  return (await page.evaluate('frames(3).then(() => pixel(pie, 150, 60))'))[3] === 255;
};

test('pages that misbehave', async (context) => {
  const browser = await openBrowser(context);
  const open = (script = '') => browser.open(pie, script);

  await context.test('a getter that throws ends the call and leaves the data as it was', async () => {
    const page = await open();
    await page.evaluate('start()');
    await page.evaluate(() => pie.SetPlotData([{ key: 'A', value: 1 }, { key: 'B', get value() { throw new Error('no amount'); } }]));
    assert.ok(page.lines.some((line) => line === 'Exception thrown while processing javascript bridge at [PiePlotView js_setPlotData:].'));
    assert.ok(page.lines.some((line) => line.includes('no amount')));
    assert.ok(await isShown(page));
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('properties are read once and in order, up to the first undefined element', async () => {
    const page = await open();
    const reads = await page.evaluate(() => {
      const reads = [];
      const noting = (name, object) => new Proxy(object, { get: (target, key) => (reads.push(`${name}.${String(key)}`), target[key]) });
      const element = (index) => noting(index, { key: `k${index}`, value: index });
      pie.SetPlotData(noting('array', [element(0), element(1), undefined, element(3)]));
      return reads;
    });
    assert.deepEqual(reads, ['array.0', '0.key', '0.value', 'array.1', '1.key', '1.value', 'array.2']);
  });

  await context.test('elements of any type do no harm', async () => {
    const page = await open();
    for (const data of ['[1, "two", true]', '[null]', '[[], () => 1]', 'null', 'undefined', '42', '"text"', '{}', '[{key: Symbol("s"), value: 1n}]', '[{key: {}, value: []}]', '[{key: "a", value: NaN}, {key: "b", value: Infinity}]', 'new Array(5)', 'Object.create(null)'])
      await page.evaluate(`pie.SetPlotOptions(${data}), pie.SetPlotData(${data})`);
    await page.evaluate('pie.HoverEntryAtIndex(), pie.HoverEntryAtIndex(true, 1e300), pie.HoverEntryAtIndex({}, "x")');
    await page.evaluate('pie.SliceColorAtIndex(), pie.SliceColorAtIndex(0, 0, null), pie.SliceColorAtIndex("1", "3", {})');
    await page.evaluate('start()');
    assert.ok(await isShown(page));
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('an array without end is given up', async () => {
    const page = await open();
    await page.evaluate('start()');
    await page.evaluate(() => pie.SetPlotData(new Proxy([], { get: () => ({ key: 'again', value: 1 }) })));
    assert.ok(page.lines.some((line) => line.includes('more than 1048576 elements')), page.lines.join('\n'));
    assert.ok(await isShown(page));
  });

  await context.test('a page function that throws is reported and changes nothing', async () => {
    const page = await open('window.SpendingTrendsHaveDisplayed = () => { calls.push(["SpendingTrendsHaveDisplayed"]); throw new Error("from the page"); };');
    await page.evaluate('start()');
    assert.ok((await page.evaluate('errors')).some((message) => message.includes('from the page')));
    assert.ok(await isShown(page));
  });

  await context.test('a page without functions is not called', async () => {
    const page = await open('window.SpendingTrendsHaveDisplayed = 7; delete window.SpendingTrendsSliceHoverIndex;');
    await page.evaluate('pie.SetPlotData(three)');
    await page.mouse.move(150, 60);
    await page.waitForTimeout(400);
    assert.deepEqual(await page.evaluate('errors'), []);
    assert.ok(await isShown(page));
  });

  await context.test('a page function may take the element out', async () => {
    for (const name of ['SpendingTrendsHaveDisplayed', 'SpendingTrendsSliceHoverIndex', 'SpendingTrendsSliceClicked']) {
      const page = await open(`window.${name} = () => { calls.push(['${name}']); document.querySelector('#pie')?.remove(); };`);
      await page.evaluate('pie.SetPlotData(three)');
      await page.waitForTimeout(400);
      if (name !== 'SpendingTrendsHaveDisplayed') {
        await page.mouse.move(150, 60);
        await page.mouse.down();
      }
      await page.waitForTimeout(100);
      assert.equal(await page.evaluate(() => document.querySelector('#pie')), null, name);
      assert.deepEqual(await page.evaluate('errors'), [], name);
      await page.evaluate((name) => {
        delete window[name];
        const again = document.createElement('zelkon-plot');
        again.id = 'pie';
        again.setAttribute('plot', 'pie');
        document.body.append(again);
        again.SetPlotData(three);
      }, name);
      assert.ok(await isShown(page), name);
      assert.ok(!page.lines.some((line) => line.includes('start over')), name);
    }
  });

  await context.test('a page function may replace the data or change the size', async () => {
    const page = await open(
      'window.SpendingTrendsSliceHoverIndex = (...values) => { calls.push(["hover", ...values]); pie.SetPlotData([{ key: "All", value: 1 }]); pie.style.width = "400px"; };',
    );
    await page.evaluate('start()');
    await page.mouse.move(150, 60);
    await page.mouse.move(150, 70);
    await page.mouse.move(160, 70);
    await page.waitForTimeout(300);
    assert.ok(await isShown(page));
    assert.deepEqual(await page.evaluate('errors'), []);
    assert.equal(await page.evaluate(() => pie.shadowRoot.querySelector('canvas').width), 400);
  });

  await context.test('a getter may take the element out or call the chart again', async () => {
    const page = await open();
    await page.evaluate('start()');
    await page.evaluate(() => {
      pie.SetPlotData([{ get key() { pie.SetPlotData(three); return 'outer'; }, value: 1 }]);
      const kept = pie;
      kept.SetPlotData([{ get key() { kept.remove(); return 'gone'; }, value: 1 }]);
      document.body.append(kept);
      kept.SetPlotData(three);
    });
    assert.ok(await isShown(page));
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('a failed instance is reported, and the charts start over with their data', async () => {
    const page = await browser.open(
      pie,
      `const instantiate = WebAssembly.instantiate; const memories = [];
       WebAssembly.instantiate = async (...all) => { const made = await instantiate(...all); memories.push(made); return made; };`,
    );
    await page.evaluate('start()');
    await page.evaluate(() => {
      // As if the machine had no more memory to give.
      WebAssembly.Memory.prototype.grow = () => { throw new RangeError('no memory'); };
      const value = 'x'.repeat(1 << 26);
      pie.SetPlotOptions([{ key: 'a', value }]);
    });
    await page.waitForTimeout(600);
    assert.ok(page.lines.some((line) => line.includes('start over')), page.lines.join('\n'));
    assert.equal(await page.evaluate('memories.length'), 2);
    await page.evaluate('pie.SetPlotData(three)');
    assert.ok(await isShown(page));
  });
});
