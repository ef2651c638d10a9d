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

  await context.test('what ends a call is logged, in the order of asking, and later data are shown as if nothing had been', async () => {
    const guard = 'Exception thrown while processing javascript bridge at [SpendingOverTimeBarView js_setPlotData:].';
    const assertion = '*** Assertion failure in -[SpendingOverTimeBarView js_setPlotData:], Classes/Views/BarOrLineView:343';
    const unreadable = [assertion, guard, 'Invalid parameter not satisfying: didScanYValue'];
    const noLength = (name) => [guard, `-[${name} length]: unrecognized selector sent to instance`];
    // What the page hands over, the periods that are shown of it (none: there is no chart yet), and the lines of the log.
    const cases = [
      // What is missing is asked for before what is wrong, and what an entry needs before what it may have.
      ['[good, { ...good, humanX: "", humanY: 5, y: "abc" }, last]', ['good', 'last']],
      ['[good, { ...good, humanX: 5, humanY: "" }, last]', undefined, noLength('NSCFNumber')],
      ['[good, { ...good, y: "abc", shortHumanX: 5 }, last]', undefined, unreadable],
      ['[good, { ...good, shortHumanX: 5 }, { ...good, y: "abc" }]', undefined, noLength('NSCFNumber')],
      ['[good, { ...good, y: "abc" }, { ...good, shortHumanX: 5 }]', undefined, unreadable],
      ['[good, null, { ...good, y: "abc" }]', ['good']],
      ['[good, , last]', ['good']],
      ['({ 0: good, 1: Object.assign(() => 1, last) })', ['good', 'last']],
      ['[good, { ...good, humanX: new String("A") }]', undefined, noLength('WebScriptObject')],
      ['[good, { ...good, y: "\u00a0 12.5 EUR" }, { ...last, y: "9".repeat(40) }]', ['good', 'good', 'last']],
      ['[good, { ...good, y: "\u22125" }]', undefined, unreadable],
      ['[good, { ...good, y: "\uff11" }]', undefined, unreadable],
      ['[good, { ...good, get y() { throw new Error("no amount"); } }]', undefined, [guard, 'The page threw while its data was read: Error: no amount']],
      ['[good, { ...good, get humanX() { throw null; } }]', undefined, [guard, 'The page threw while its data was read: null']],
    ];
    const script = `
      const good = { humanX: 'good', humanY: '$1', y: '1' }, last = { humanX: 'last', humanY: '$2', y: '2' };
      const see = async (data) => {
        pie.setAttribute('plot', 'spendingOverTimeBarOrLine');
        calls.length = 0;
        pie.SetPlotOptions([{ key: 'DisplayYLabels', value: false }]);
        pie.SetPlotData(data);
        await frames(3);
        const told = calls.length;
        pie.SetPlotData([last]);
        await frames(3);
        const periods = () => [...pie.shadowRoot.querySelectorAll('tbody th')].map((cell) => cell.textContent);
        while (periods().length === 0) await new Promise((resolve) => setTimeout(resolve, 10));
        return { told, periods: periods(), calls: calls.length };
      };`;
    const page = await browser.open(chart, script, { reducedMotion: 'reduce' });
    for (const [data, shown, lines = []] of cases) {
      page.lines.length = 0;
      assert.deepEqual(await page.evaluate(`see(${data})`), { told: shown ? 1 : 0, periods: shown ?? ['last'], calls: 1 }, data);
      assert.deepEqual(page.lines.map((line) => line.replace(/ 0x[0-9a-f]+$/, '')), lines, data);
    }
    assert.deepEqual(await page.evaluate('errors'), []);
  });
});
