import assert from 'node:assert/strict';
import { test } from 'node:test';
import { noticesOf, pageNotices } from '../../Hosts/Web/notices.mjs';

const statement = `Format: a machine reads it

Files: *
Copyright: 2010 Everyone
License: Expat or Other~One

Files:
 lib/linked/*
 lib/linked/more.c
Copyright:
 2011  Somebody
License: BSD-2-Clause

Files: tests/*
Copyright: 2012 Nobody
License: Unused

License: Expat
 Permission is granted.
 .
 As it is.

License: Other~One
 Another permission.

License: BSD-2-clause
 Two clauses.

License: Unused
 Not this one.
`;

test('notices are those of the matching files and the licences that they name, whole', () => {
  assert.equal(
    noticesOf(statement, [/^lib\/linked\//]),
    'Files:\n lib/linked/*\n lib/linked/more.c\nCopyright:\n 2011  Somebody\nLicense: BSD-2-Clause\n\nLicense: BSD-2-clause\n Two clauses.',
  );
  const all = noticesOf(statement, [/^\*$/]);
  for (const text of ['2010 Everyone', 'Permission is granted.\n .\n As it is.', 'Another permission.']) assert.ok(all.includes(text), text);
  for (const text of ['Nobody', 'Not this one', 'Two clauses']) assert.ok(!all.includes(text), text);
});

test("the page's notices state the licences of the C library, the C++ library and the compiler's run-time", () => {
  const notices = pageNotices();
  for (const text of ['system/lib/libc/musl/*', 'Rich Felker', 'Permission is hereby granted', 'system/lib/libcxx/*', 'system/lib/compiler-rt/*', 'Apache License', 'END OF TERMS AND CONDITIONS']) {
    assert.ok(notices.includes(text), text);
  }
  assert.ok(!notices.includes('tests/'), 'nothing of what is not linked');
});

test('a missing statement is an error', () => {
  assert.throws(() => pageNotices('/nowhere/copyright'), /ENOENT/);
});
