// A page that plays scenarios on the module that is made for them.
import { copyFileSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { build } from 'esbuild';
import { chromium } from 'playwright-core';
import { serve } from '../../Tools/serve.mjs';
import { flags, root } from './browser.mjs';

export const command = join(root, 'build/native-debug/bin/zelkon-plot');

// Gives a folder that is taken away after the test, `play(scenario, scale)`, which plays in a page of its own, and
// `playAll(scenarios)`, which plays one after another in one page.
export async function openPlayer(context) {
  const folder = mkdtempSync(join(tmpdir(), 'zelkon-scenarios-'));
  await build({
    stdin: { contents: "import { play } from './Tests/Scenarios/player'; window.play = play;", resolveDir: root, loader: 'ts' },
    bundle: true,
    format: 'esm',
    target: 'es2022',
    loader: { '.png': 'binary' },
    outfile: join(folder, 'player.js'),
    logLevel: 'warning',
  });
  copyFileSync(join(root, 'build/wasm/bin/zelkon-plot-scenarios.wasm'), join(folder, 'zelkon-plot.wasm'));
  writeFileSync(join(folder, 'favicon.ico'), '');
  const server = await serve([folder]);
  const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: flags });
  context.after(async () => {
    await browser.close();
    server.close();
    rmSync(folder, { recursive: true, force: true });
  });


  writeFileSync(join(folder, 'index.html'), '<!doctype html><html lang="en"><title>scenario</title><script type="module" src="player.js"></script>');
  const openPage = async (locale) => {
    const page = await browser.newPage({ locale });
    await page.goto(`http://127.0.0.1:${server.address().port}/`);
    await page.waitForFunction(() => window.play);
    return page;
  };
  return {
    folder,
    async playAll(scenarios) {
      const page = await openPage('en-US');
      const played = [];
      for (const scenario of scenarios) played.push(await page.evaluate((given) => window.play(given), scenario));
      await page.close();
      return played;
    },
    async play(scenario, scale = 1) {
      const page = await openPage((scenario.locale ?? 'en_US').replace('_', '-'));
      const played = await page.evaluate(([given, pixels]) => window.play(given, pixels), [scenario, scale]);
      await page.close();
      return played;
    },
  };
}
