// Short month names in a page's own language thin to quarter starts, natively and in Chromium.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { command, openPlayer } from './player.mjs';

const languages = {
  en_US: ['Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', 'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec'],
  de_DE: ['Jan', 'Feb', 'Mär', 'Apr', 'Mai', 'Jun', 'Jul', 'Aug', 'Sep', 'Okt', 'Nov', 'Dez'],
  fr_FR: ['janv.', 'févr.', 'mars', 'avr.', 'mai', 'juin', 'juil.', 'août', 'sept.', 'oct.', 'nov.', 'déc.'],
  ja_JP: ['1月', '2月', '3月', '4月', '5月', '6月', '7月', '8月', '9月', '10月', '11月', '12月'],
};

// Two years from November on, 14 points a month: too narrow for every name, wide enough for every third.
const entries = (months) =>
  Array.from({ length: 24 }, (_, index) => ({
    humanX: `a name that is too long for any month, ${index}`,
    shortHumanX: months[(index + 10) % 12],
    shortHumanXSubtitle: String(2023 + Math.floor((index + 10) / 12)),
    humanY: '$1',
    y: '1',
  }));

test('month names', async (context) => {
  const player = await openPlayer(context);
  for (const [locale, months] of Object.entries(languages)) {
    await context.test(locale, async () => {
      const scenario = {
        plot: 'spendingOverTimeBarOrLine',
        size: [57 + 24 * 14, 300],
        locale,
        steps: [
          { call: 'SetPlotOptions', arguments: [[{ key: 'DisplayYLabels', value: false }]] },
          { call: 'SetPlotData', arguments: [entries(months)] },
          { layers: 'chart' },
        ],
      };
      const drawn = ({ layers }) => layers.drawing.filter(({ op }) => op === 'text').map(({ text }) => text);
      const [january, april, july, october] = [0, 3, 6, 9].map((index) => months[index]);
      const expected = [january, '2024', april, july, october, january, '2025', april, july, october];

      const played = await player.play(scenario);
      assert.deepEqual(drawn(played.layers.chart), expected, 'in the page');
      const file = join(player.folder, 'months.json');
      writeFileSync(file, JSON.stringify(scenario));
      execFileSync(command, ['play', file, '--out', player.folder]);
      assert.deepEqual(drawn(JSON.parse(readFileSync(join(player.folder, 'chart'), 'utf8'))), expected, 'natively');
    });
  }
});
