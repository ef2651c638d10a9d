// Checks and bundles the page's side around the WebAssembly module, into out/web: what a page loads and what the npm
// package holds. The module itself is built first, by CMake's preset "wasm".
import { execFileSync } from 'node:child_process';
import { copyFileSync, mkdirSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { build } from 'esbuild';
import { pageNotices } from './notices.mjs';

const here = dirname(fileURLToPath(import.meta.url));
const root = join(here, '..', '..');
const module = join(root, 'build', 'wasm', 'bin');
const out = join(root, 'out', 'web');

execFileSync(process.execPath, [join(root, 'node_modules', 'typescript', 'bin', 'tsc'), '-p', root], { stdio: 'inherit' });
mkdirSync(out, { recursive: true });
await build({
  entryPoints: [join(here, 'index.ts')],
  outfile: join(out, 'zelkon-plot.js'),
  bundle: true,
  format: 'esm',
  target: 'es2022',
  minify: true,
  loader: { '.png': 'binary' },
  logLevel: 'warning',
});
copyFileSync(join(module, 'zelkon-plot-module.wasm'), join(out, 'zelkon-plot.wasm'));
for (const name of ['package.json', 'zelkon-plot.d.ts']) copyFileSync(join(here, name), join(out, name));
copyFileSync(join(root, 'LICENSE'), join(out, 'LICENSE'));
writeFileSync(join(out, 'THIRD-PARTY.txt'), pageNotices());
