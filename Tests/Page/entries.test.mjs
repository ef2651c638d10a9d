import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';

const chart = '<zelkon-plot id="pie" plot="spendingOverTimeBarOrLine"></zelkon-plot>';

test('entries of amounts over time', async (context) => {
  const browser = await openBrowser(context);

  await context.test('every property is read once and in order, up to the first null element', async () => {
    const page = await browser.open(chart);
    const reads = await page.evaluate(() => {
      const reads = [];
      const noting = (name, object) => new Proxy(object, { get: (target, key) => (reads.push(`${name}.${String(key)}`), target[key]) });
      pie.SetPlotData(noting('array', [noting(0, { humanX: 'A', humanY: '$1', y: '1' }), null, {}]));
      return reads;
    });
    assert.deepEqual(reads, ['array.0', '0.humanX', '0.mediumHumanX', '0.shortHumanX', '0.shortHumanXSubtitle', '0.humanY', '0.y', 'array.1']);
  });

  await context.test('a getter that throws late in a long array ends the call', async () => {
    const page = await browser.open(chart);
    await page.evaluate(() => {
      const entries = Array.from({ length: 40000 }, (_, i) => ({ humanX: `day ${i}`, humanY: `$${i}`, y: `${i}` }));
      entries.push({ humanX: 'last', humanY: '$1', get y() { throw new Error('no amount'); } });
      pie.SetPlotData(entries);
    });
    assert.ok(page.lines.some((line) => line.includes('no amount')), page.lines.join('\n'));
    assert.deepEqual(await page.evaluate('calls'), []);
    await page.evaluate(() => pie.SetPlotData(Array.from({ length: 40000 }, (_, i) => ({ humanX: `day ${i}`, humanY: `$${i}`, y: `${i}` }))));
    for (let waited = 0; waited < 100 && (await page.evaluate('calls.length')) === 0; ++waited) await page.waitForTimeout(100);
    assert.deepEqual(await page.evaluate('calls'), [['GraphHasDisplayed']]);
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('values of any type do no harm', async () => {
    const page = await browser.open(chart);
    for (const value of ['Symbol("s")', '1n', '5', 'true', 'null', '{}', '[]', '""', '"\\ud800"', '"x".repeat(1000)'])
      for (const key of ['humanX', 'mediumHumanX', 'shortHumanX', 'shortHumanXSubtitle', 'humanY', 'y'])
        await page.evaluate(`pie.SetPlotData([{ humanX: 'A', humanY: '$1', y: '1', ${key}: ${value} }])`);
    assert.deepEqual(await page.evaluate('errors'), []);
    assert.ok(!page.lines.some((line) => line.startsWith('uncaught')), page.lines.join('\n'));
  });
});
