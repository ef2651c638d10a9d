import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { graphemeTable } from '../../Platform/CoreText/make_grapheme_table.mjs';
import { root } from './sources.mjs';

const data = '/usr/share/unicode';
const versionOf = (text) => /GraphemeBreakProperty-([0-9.]+)\.txt/.exec(text)[1];

test("the table of grapheme clusters is what its script makes of Unicode's data", (context) => {
  const file = join(data, 'auxiliary/GraphemeBreakProperty.txt');
  assert.ok(existsSync(file), 'the package unicode-data is missing');
  const header = readFileSync(join(root, 'Platform/CoreText/GraphemeTable.h'), 'utf8');
  const version = /of Unicode ([0-9.]+)\.$/m.exec(header)[1];
  const installed = versionOf(readFileSync(file, 'utf8'));
  if (installed !== version) {
    context.skip(`the table is of Unicode ${version}, the package of ${installed}`);
    return;
  }
  assert.equal(header, graphemeTable(data));
});
