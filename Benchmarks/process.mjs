// Times whole processes: the command that writes one PNG, and the same with many PNGs in one process, from which follows
// the cost of each further one.
//
// node Benchmarks/process.mjs [command] [runs]
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = join(dirname(fileURLToPath(import.meta.url)), '..');
const command = process.argv[2] ?? join(root, 'build', 'native-release', 'bin', 'zelkon-plot');
const runs = Number(process.argv[3] ?? 40);
const many = 51;

const folder = mkdtempSync(join(tmpdir(), 'zelkon-benchmark-'));
const input = join(folder, 'pie.json');
const data = Array.from({ length: 8 }, (_, i) => ({ key: `Category ${i + 1}`, value: 40.25 + 1300 / (i + 1) }));
writeFileSync(input, JSON.stringify({ plot: 'pie', size: [600, 400], data }));

function milliseconds(words) {
  const start = process.hrtime.bigint();
  const { status, stderr, error } = spawnSync(command, words, { encoding: 'utf8' });
  const end = process.hrtime.bigint();
  if (status !== 0) throw error ?? new Error(stderr);
  return Number(end - start) / 1e6;
}

function measure(words) {
  milliseconds(words); // the files that it loads are then in memory
  const times = Array.from({ length: runs }, () => milliseconds(words)).sort((a, b) => a - b);
  return { least: times[0], median: times[Math.floor(times.length / 2)] };
}

const render = (count) => [
  'render',
  ...Array(count).fill(input),
  ...Array.from({ length: count }, (_, i) => ['-o', join(folder, `${i}.png`)]).flat(),
];
const row = (name, { least, median }) => console.log(name.padEnd(34) + median.toFixed(2).padStart(9) + least.toFixed(2).padStart(9));

try {
  console.log('milliseconds'.padEnd(34) + 'median'.padStart(9) + 'least'.padStart(9));
  row('process that only starts', measure(['--version']));
  const one = measure(render(1));
  row('process that writes one PNG', one);
  const all = measure(render(many));
  row('each further PNG of the process', {
    median: (all.median - one.median) / (many - 1),
    least: (all.least - one.least) / (many - 1),
  });
} finally {
  rmSync(folder, { recursive: true, force: true });
}
