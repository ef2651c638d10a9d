// The charts look the same in Chromium as natively, at scale 1 and 2, and on paper as on the screen without its gloss.
// Pictures, and for those that differ the difference, are left in out/pictures.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { basename, join } from 'node:path';
import { test } from 'node:test';
import pixelmatch from 'pixelmatch';
import { PNG } from 'pngjs';
import { pictures, root } from './browser.mjs';
import { command, openPlayer } from './player.mjs';

// Two rasterisers smooth the edges of glyphs and curves each in its own way; what is wrong shows on more than edges.
const colourTolerance = 0.15;
const greatestShare = 0.003;

// The scenarios of the folder, and one that is too long for it: the days of four years.
const folder = join(root, 'Tests', 'Pictures');
const scenarios = new Map(
  readdirSync(folder).map((file) => [basename(file, '.json'), JSON.parse(readFileSync(join(folder, file), 'utf8'))]),
);
const dayFormat = new Intl.DateTimeFormat('en-US', { timeZone: 'UTC', day: 'numeric', month: 'short', year: 'numeric' });
const days = Array.from({ length: 1500 }, (_, day) => {
  const y = (80 + 40 * Math.sin(day / 90) + 25 * Math.sin(day * day)).toFixed(2);
  return { humanX: dayFormat.format(Date.UTC(2009, 0, 1 + day)), humanY: `$${y}`, y };
});
scenarios.set('line-days', {
  plot: 'spendingOverTimeBarOrLine',
  size: [700, 320],
  steps: [{ call: 'SetPlotData', arguments: [days] }, { wait: 2 }, { mouse: 'moved', at: [400, 250] }, { wait: 0.5 }, { snapshot: 'bubble.png' }],
});

test('pictures', async (context) => {
  const player = await openPlayer(context);
  for (const [name, scenario] of scenarios) {
    const file = join(player.folder, `${name}.json`);
    writeFileSync(file, JSON.stringify(scenario));
    for (const scale of [1, 2]) {
      const out = join(pictures, `${name}@${scale}`);
      mkdirSync(out, { recursive: true });
      execFileSync(command, ['play', file, '--out', out, '--scale', String(scale)]);
      const { snapshots } = await player.play(scenario, scale);
      for (const [picture, address] of Object.entries(snapshots)) {
        await context.test(`${name}: ${basename(picture, '.png')} at scale ${scale}`, () => {
          const page = Buffer.from(address.slice(address.indexOf(',') + 1), 'base64');
          writeFileSync(join(out, picture.replace('.png', ' in the page.png')), page);
          compare(page, readFileSync(join(out, picture)), join(out, picture.replace('.png', ' difference.png')));
        });
      }
      // Paper is finer than a screen: at one pixel a point this would compare how two rasterisers hint small text.
      if (scale === 1 || !scenario.steps.some(({ print }) => print === 'paper.pdf')) continue;
      await context.test(`${name}: the page of a PDF at scale ${scale}`, () => {
        execFileSync('pdftoppm', ['-png', '-singlefile', '-r', String(72 * scale), join(out, 'paper.pdf'), join(out, 'paper from PDF')]);
        compare(readFileSync(join(out, 'paper from PDF.png')), readFileSync(join(out, 'paper.png')), join(out, 'paper difference.png'));
      });
    }
  }
});

function compare(actual, expected, difference) {
  const a = onWhite(PNG.sync.read(actual));
  const b = onWhite(PNG.sync.read(expected));
  assert.deepEqual([a.width, a.height], [b.width, b.height]);
  const picture = new PNG({ width: a.width, height: a.height });
  const count = pixelmatch(a.data, b.data, picture.data, a.width, a.height, { threshold: colourTolerance });
  const share = count / (a.width * a.height);
  if (share > greatestShare) writeFileSync(difference, PNG.sync.write(picture));
  assert.ok(share <= greatestShare, `${count} pixels (${(100 * share).toFixed(2)} %) differ`);
}

// As paper and a white page show it.
function onWhite(png) {
  const { data } = png;
  for (let at = 0; at < data.length; at += 4) {
    const alpha = data[at + 3] / 255;
    for (let i = 0; i < 3; ++i) data[at + i] = Math.round(data[at + i] * alpha + 255 * (1 - alpha));
    data[at + 3] = 255;
  }
  return png;
}
