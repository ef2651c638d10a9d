import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { test } from 'node:test';
import { filesBelow, root } from './sources.mjs';

const documents = ['README.md', ...filesBelow('Documentation').filter((path) => path.endsWith('.md'))];

test('links between documents lead somewhere', () => {
  const dead = documents.flatMap((path) =>
    [...readFileSync(join(root, path), 'utf8').matchAll(/\]\(([^)#]+)\)/g)]
      .map((match) => match[1])
      .filter((link) => !/^https?:/.test(link) && !existsSync(join(root, dirname(path), link)))
      .map((link) => `${path}: ${link}`),
  );
  assert.deepEqual(dead, []);
});

test('the map of the folders names every folder of the sources', () => {
  const readme = readFileSync(join(root, 'README.md'), 'utf8');
  for (const folder of ['Classes', 'Resources', 'Platform', 'Backends', 'Hosts', 'Tests', 'Benchmarks', 'Examples', 'Documentation', 'Tools']) {
    assert.ok(readme.includes(`| \`${folder}/\` |`), folder);
  }
});
