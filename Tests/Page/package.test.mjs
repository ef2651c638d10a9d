// What the npm package holds stands in out/web: the files that it names, and the licences of what is linked into them.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { pageNotices } from '../../Hosts/Web/notices.mjs';
import { root } from './browser.mjs';

const read = (name) => readFileSync(join(root, 'out/web', name), 'utf8');

test('every file that the package names is there', () => {
  const { files } = JSON.parse(read('package.json'));
  assert.ok(files.includes('THIRD-PARTY.txt'));
  for (const name of files) assert.notEqual(read(name).length, 0, name);
});

test('the licences stand beside the module', () => {
  assert.match(read('LICENSE'), /Permission is hereby granted/);
  assert.equal(read('THIRD-PARTY.txt'), pageNotices());
});
