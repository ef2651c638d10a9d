// Every scenario of Tests/Scenarios gives the same transcript and the same layers in Chromium as the command gives.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readdirSync, readFileSync } from 'node:fs';
import { basename, join } from 'node:path';
import { test } from 'node:test';
import { root } from './browser.mjs';
import { command, openPlayer } from './player.mjs';

const scenarios = readdirSync(join(root, 'Tests', 'Scenarios'), { withFileTypes: true })
  .filter((entry) => entry.isDirectory())
  .flatMap(({ name }) => readdirSync(join(root, 'Tests', 'Scenarios', name)).map((file) => join(name, file)))
  .filter((file) => file.endsWith('.json'));

test('scenarios', async (context) => {
  const player = await openPlayer(context);
  for (const file of scenarios) {
    await context.test(file.replace('.json', ''), async () => {
      const path = join(root, 'Tests', 'Scenarios', file);
      const scenario = JSON.parse(readFileSync(path, 'utf8'));
      const out = join(player.folder, 'native', basename(file, '.json'));
      const native = execFileSync(command, ['play', path, '--out', out], { encoding: 'utf8' });
      const played = await player.play(scenario);

      assert.deepEqual(played.transcript.map(withoutAddresses), native.split('\n').slice(0, -1).map(withoutAddresses));
      for (const [name, tree] of Object.entries(played.layers)) {
        compare(tree, JSON.parse(readFileSync(join(out, name), 'utf8')), name, 1e-6);
      }
    });
  }
});

// Reasons of exceptions name the object by where it lies in memory.
function withoutAddresses(line) {
  return line.replace(/0x[0-9a-f]+/g, '0x');
}

// Lengths that come from measured text may differ by half a point, everything else by rounding alone.
function compare(actual, expected, place, tolerance) {
  if (typeof actual === 'number' && typeof expected === 'number') {
    assert.ok(Math.abs(actual - expected) <= tolerance, `${place}: ${actual} in the page, ${expected} natively`);
  } else if (typeof actual === 'string' && typeof expected === 'string' && place.endsWith('/path')) {
    const numbers = (path) => path.split(' ').map((word) => (/[A-Z]/.test(word) ? word : Number(word)));
    // Paths are printed with six digits.
    compare(numbers(actual), numbers(expected), `${place}/`, Math.max(tolerance, 2e-3));
  } else if (actual !== null && expected !== null && typeof actual === 'object' && typeof expected === 'object') {
    assert.deepEqual(Object.keys(actual), Object.keys(expected), place);
    const isText = 'string' in actual || actual.op === 'text' || actual.sublayers?.some((layer) => 'string' in layer);
    for (const key of Object.keys(actual)) compare(actual[key], expected[key], `${place}/${key}`, isText ? 0.5 : tolerance);
  } else {
    assert.strictEqual(actual, expected, place);
  }
}
