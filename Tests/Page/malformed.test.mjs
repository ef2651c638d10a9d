// Whatever a page puts in the place of a chart's entries and options ends the same way natively and in Chromium: the entry
// is kept, left out, or ends the call with lines that say why.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { command, openPlayer } from './player.mjs';

const guard = 'Exception thrown while processing javascript bridge at [SpendingOverTimeBarView js_setPlotData:].';
const raised = (reason) => ({ log: [guard, reason] });
const unscanned = {
  log: [
    '*** Assertion failure in -[SpendingOverTimeBarView js_setPlotData:], Classes/Views/BarOrLineView:343',
    guard,
    'Invalid parameter not satisfying: didScanYValue',
  ],
};
// A chart of so many entries, without a word.
const shows = (entries) => ({ log: [], entries });
const noSelector = (type, selector) => raised(`-[${type} ${selector}]: unrecognized selector sent to instance 0x`);

const missing = Symbol('missing');
const absent = [missing, null, undefined, ''];
const wrongTypes = [
  [5, 'NSCFNumber'],
  [NaN, 'NSCFNumber'],
  [-Infinity, 'NSCFNumber'],
  [10n, 'NSCFNumber'],
  [true, 'NSCFBoolean'],
  [[], 'WebScriptObject'],
  [['1'], 'WebScriptObject'],
  [{}, 'WebScriptObject'],
  [{ y: { y: '1' } }, 'WebScriptObject'],
];

const good = { humanX: 'A', humanY: '$1', y: '1' };
const between = (element) => [good, element, { ...good, humanX: 'B' }];
const withValue = (key, value) => {
  const entry = { ...good, humanX: 'odd', [key]: value };
  if (value === missing) delete entry[key];
  return between(entry);
};

const scalarTypes = [[5, 'NSCFNumber'], [NaN, 'NSCFNumber'], ['text', 'NSCFString'], [false, 'NSCFBoolean']];

// What is malformed, how, the page's data and options, and what comes of them.
function* cases() {
  for (const key of ['humanX', 'humanY', 'y', 'mediumHumanX', 'shortHumanX', 'shortHumanXSubtitle']) {
    const isNeeded = ['humanX', 'humanY', 'y'].includes(key);
    for (const value of absent) yield { what: key, value, data: withValue(key, value), expected: shows(isNeeded ? 2 : 3) };
    for (const [value, type] of wrongTypes) {
      const expected = key === 'shortHumanXSubtitle' ? shows(3) : noSelector(type, 'length');
      yield { what: key, value, data: withValue(key, value), expected };
    }
  }
  for (const value of ['abc', ' ', '-', '$12', 'NaN', 'Infinity', '-inf', '1e999', '-1e999'])
    yield { what: 'y', value, data: withValue('y', value), expected: unscanned };
  for (const value of ['12.5 EUR', ' \n7', '-.5e2x', '0x10', '1e-999'])
    yield { what: 'y', value, data: withValue('y', value), expected: shows(3) };

  for (const value of [null, undefined]) yield { what: 'an element', value, data: between(value), expected: shows(1) };
  for (const value of [{}, [], [good]]) yield { what: 'an element', value, data: between(value), expected: shows(2) };
  for (const [value, type] of scalarTypes) {
    const reason = `[<${type} 0x> valueForUndefinedKey:]: this class is not key value coding-compliant for the key humanX.`;
    yield { what: 'an element', value, data: between(value), expected: raised(reason) };
  }
  for (const value of [null, [], {}]) yield { what: 'the data', value, data: value, expected: shows(0) };
  for (const [value, type] of [...scalarTypes, [undefined, 'WebUndefined']]) {
    const reason = `-[${type} webScriptValueAtIndex:]: unrecognized selector sent to instance 0x`;
    yield { what: 'the data', value, data: value, expected: raised(reason) };
  }

  const option = (key, value, expected) => {
    const options = [value === missing ? { key } : { key, value }];
    return { what: key, value, data: [good], options, expected };
  };
  for (const key of ['DisplayXLabels', 'DisplayYLabels', 'AllValuesPositive', 'YTickMarksExtendFullWidth']) {
    for (const value of [...absent, 'no', 0, NaN, 10n]) yield option(key, value, shows(1));
    for (const value of [[], {}, [true]]) yield option(key, value, noSelector('WebScriptObject', 'boolValue'));
  }
  for (const value of [...absent, 5, NaN, true, [], {}, '\ud800']) yield option('CurrencyID', value, shows(1));
  // Its labels are wider than the chart.
  const noRoom = 'DEBUGGING: BarPlot cannot handle too many bars yet, the margins have shrunk to less than 2 pixels.';
  yield option('CurrencyID', 'x'.repeat(300), raised(noRoom));
}

function nameOf(value) {
  if (value === missing) return 'missing';
  if (typeof value === 'bigint') return `${value}n`;
  if (typeof value === 'number') return String(value);
  return value === undefined ? 'undefined' : JSON.stringify(value).slice(0, 40);
}

// Whether a scenario's file can say it; the rest a page alone can hand over.
function fitsFile(value) {
  if (typeof value === 'object' && value !== null) return Object.values(value).every(fitsFile);
  if (typeof value === 'number') return Number.isFinite(value);
  return value !== undefined && typeof value !== 'bigint' && value !== '\ud800';
}

function check(host, transcript, tree, expected) {
  // Reasons name the object by where it lies in memory. An object in place of an array counts as one the chart wrote to.
  const lines = transcript.filter((line) => !line.includes(' result ')).map((line) => line.replace(/0x[0-9a-f]+/, '0x'));
  assert.deepEqual(lines, expected.log.map((line) => `0.000 log ${line}`), host);
  if (expected.entries === undefined) assert.equal(tree.layers.contents, null, host);
  else assert.equal(tree.plotter.hitRectangles.length, expected.entries, host);
}

test('malformed entries and options', async (context) => {
  const player = await openPlayer(context);
  const all = [...cases()];
  const scenarios = all.map(({ data, options = [] }) => ({
    plot: 'spendingOverTimeBarOrLine',
    size: [500, 300],
    steps: [{ call: 'SetPlotOptions', arguments: [options] }, { call: 'SetPlotData', arguments: [data] }, { layers: 'tree' }],
  }));
  const played = await player.playAll(scenarios);
  const folder = join(player.folder, 'malformed');
  mkdirSync(folder);
  for (const [index, { what, value, expected }] of all.entries()) {
    await context.test(`${what}: ${nameOf(value)}`, () => {
      check('in the page', played[index].transcript, played[index].layers.tree, expected);
      if (!fitsFile(scenarios[index])) return;
      const file = join(folder, 'case.json');
      writeFileSync(file, JSON.stringify(scenarios[index]));
      const transcript = execFileSync(command, ['play', file, '--out', folder], { encoding: 'utf8' }).split('\n');
      check('natively', transcript.slice(0, -1), JSON.parse(readFileSync(join(folder, 'tree'), 'utf8')), expected);
    });
  }
});
