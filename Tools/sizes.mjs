// Prints what a page must load from a folder: each script and WebAssembly file raw, by gzip and by brotli, and the sum.
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { brotliCompressSync, gzipSync } from 'node:zlib';

const limit = 60_000;
const folder = process.argv[2];
const line = (name, sizes) =>
  console.log(name.padEnd(28) + sizes.map((size) => (size / 1000).toFixed(1).padStart(9)).join('') + ' kB');

console.log('A page loads'.padEnd(28) + ['raw', 'gzip', 'brotli'].map((title) => title.padStart(9)).join(''));
const total = [0, 0, 0];
for (const name of readdirSync(folder).filter((each) => /\.(js|wasm)$/.test(each)).sort()) {
  const bytes = readFileSync(join(folder, name));
  const sizes = [bytes, gzipSync(bytes, { level: 9 }), brotliCompressSync(bytes)].map((each) => each.length);
  sizes.forEach((size, index) => (total[index] += size));
  line(name, sizes);
}
line('together', total);
if (total[2] > limit) {
  console.log(`Warning: more than ${limit / 1000} kB by brotli.`);
}
