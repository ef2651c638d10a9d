// Amounts read the same natively and in a page: the command's ICU against the browser's Intl.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { promisify } from 'node:util';
import { build } from 'esbuild';
import { openBrowser, root } from './browser.mjs';

const locales = ['en_US', 'en_GB', 'de_DE', 'fr_FR', 'ja_JP', 'pt_BR', 'de_CH', 'ar_EG'];
const codes = [null, 'USD', 'EUR', 'GBP', 'JPY', 'CHF', 'NOPE', '', '€', 'R$', '$x', ' '];

// Where the two libraries' data differ; Documentation/Deviations.md says how. What is named here is taken out of the
// page's text before it is compared.
const differences = new Map([['de_CH', (text) => text.replaceAll("'", '\u2019')]]);

// Their gridlines are whole millions and halves on both sides of zero.
const entries = [
  { humanX: 'a', humanY: 'a', y: '2345678' },
  { humanX: 'b', humanY: 'b', y: '-1200000' },
];

function textsOf(layer) {
  const own = (layer.drawing ?? []).filter(({ op }) => op === 'text').map(({ text }) => text);
  return [...own, ...(layer.sublayers ?? []).flatMap(textsOf)];
}

// What the command writes beside the gridlines.
async function nativeLabels(folder, locale, code) {
  const scenario = {
    plot: 'spendingOverTimeBarOrLine',
    size: [500, 400],
    locale,
    steps: [
      { call: 'SetPlotOptions', arguments: [code === null ? [] : [{ key: 'CurrencyID', value: code }]] },
      { call: 'SetPlotData', arguments: [entries] },
      { wait: 2 },
      { layers: `${locale}-${code}.layers.json` },
    ],
  };
  const file = join(folder, `${locale}-${code}.json`);
  writeFileSync(file, JSON.stringify(scenario));
  await promisify(execFile)(join(root, 'build/native-debug/bin/zelkon-plot'), ['play', file, '--out', folder]);
  const { layers } = JSON.parse(readFileSync(join(folder, `${locale}-${code}.layers.json`), 'utf8'));
  return textsOf(layers).filter((text) => text !== 'a' && text !== 'b');
}

test('formats of amounts', async (context) => {
  const folder = mkdtempSync(join(tmpdir(), 'zelkon-formats-'));
  context.after(() => rmSync(folder, { recursive: true, force: true }));
  const bundle = await build({
    stdin: { contents: "import { LocaleRuntime } from './Backends/Canvas/locale'; window.LocaleRuntime = LocaleRuntime;", resolveDir: root, loader: 'ts' },
    bundle: true,
    format: 'iife',
    target: 'es2022',
    write: false,
    logLevel: 'warning',
  });
  const browser = await openBrowser(context);
  const page = await browser.open('', bundle.outputFiles[0].text);

  const values = (await nativeLabels(folder, 'en_US', null)).map((text) => Number(text.replaceAll(',', '')));
  await context.test('gridlines are whole numbers of either sign', () => {
    assert.ok(values.length > 2 && values.every(Number.isInteger) && values.includes(0) && Math.min(...values) < 0 && Math.max(...values) > 1e6, String(values));
  });

  for (const locale of locales) {
    await context.test(locale, async () => {
      for (const code of codes) {
        const pageLabels = await page.evaluate(
          ([locale, code, values]) => {
            const runtime = new LocaleRuntime(locale);
            const bytes = code === null ? null : new TextEncoder().encode(code);
            return values.map((value) => new TextDecoder().decode(runtime.formatNumber(value, bytes, 0)));
          },
          [locale, code, values],
        );
        const labels = await nativeLabels(folder, locale, code);
        const agreed = differences.get(locale) ?? ((text) => text);
        assert.deepEqual(pageLabels.map(agreed), labels, `${locale} ${code ?? 'without a currency'}`);
      }
    });
  }
});
