import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, statSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { filesBelow, isSource, root } from './sources.mjs';

const folders = ['Platform', 'Classes', 'Backends', 'Hosts', 'Tests', 'Benchmarks'];
const isExecutable = (path) => (statSync(join(root, path)).mode & 0o111) !== 0;

test('sources are formatted', () => {
  const sources = filesBelow(...folders).filter(isSource);
  execFileSync('clang-format', ['--dry-run', '--Werror', ...sources], { cwd: root, stdio: ['ignore', 'inherit', 'pipe'] });
});

test('the commands can be executed', () => {
  for (const path of ['run', 'test', '.ci/run']) {
    assert.ok(isExecutable(path), path);
  }
});

test('nothing else among the sources and documents can be executed', () => {
  const others = filesBelow(...folders, 'Documentation', 'Examples', 'Resources').filter(
    (path) => !/\.(sh|py)$/.test(path) && !readFileSync(join(root, path)).subarray(0, 2).equals(Buffer.from('#!')),
  );
  assert.deepEqual(others.filter(isExecutable), []);
});

test('text files end with one newline and have no trailing blanks', () => {
  const texts = filesBelow(...folders, 'Documentation', 'Examples', 'Tools').filter((path) =>
    /\.(h|cpp|mjs|ts|js|json|md|html|css|txt|sh|cmake)$/.test(path),
  );
  const wrong = texts.filter((path) => {
    const text = readFileSync(join(root, path), 'utf8');
    return text.length > 0 && (!text.endsWith('\n') || text.endsWith('\n\n') || /[ \t\r]$/m.test(text));
  });
  assert.deepEqual(wrong, []);
});
