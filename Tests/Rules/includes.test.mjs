import assert from 'node:assert/strict';
import { test } from 'node:test';
import { cycle, includesOf, linesMatching, objections, readSources } from './sources.mjs';

const everything = readSources('include', 'Platform', 'Classes', 'Backends', 'Hosts', 'Tests', 'Benchmarks');
const inside = readSources('Platform', 'Classes');

test('the tree has sources to look at', () => {
  assert.ok(inside.size > 10);
});

test('files include only what stands to their left', () => {
  assert.deepEqual(objections(everything), []);
});

test('no file includes itself by way of others', () => {
  assert.equal(cycle(everything), null);
});

test('the platform and the plug-in include nothing but the standard library from outside', () => {
  const found = [];
  for (const [path, text] of inside) {
    for (const { name, line, angled } of includesOf(text)) {
      if (angled && /[./]/.test(name)) found.push(`${path}:${line}: <${name}>`);
    }
  }
  assert.deepEqual(found, []);
});

test('the platform and the plug-in have no conditional compilation', () => {
  assert.deepEqual(linesMatching(inside, /^\s*#\s*(if|ifdef|ifndef|elif|else)\b/), []);
});

test('nothing below the hosts reads a clock, the environment or the process locale', () => {
  const pattern = /\b(getenv|setlocale|gettimeofday|clock_gettime|localtime(_r)?|system_clock|steady_clock|high_resolution_clock|emscripten_get_now)\b|\bstd::time\s*\(/;
  assert.deepEqual(linesMatching(readSources('Platform', 'Classes', 'Backends'), pattern), []);
});

test('an include to the right, out of a backend or of nothing is seen', () => {
  const sources = new Map([
    ['Platform/Foundation/A.h', '#include "AppKit/B.h"\n'],
    ['Platform/AppKit/B.h', '#include "Foundation/A.h"\n#include <vector>\n'],
    ['Backends/Cairo/C.cpp', '\n#include "Classes/D.h"\n'],
    ['Backends/Canvas/E.cpp', '#include "Backends/Cairo/F.h"\n'],
    ['Backends/Cairo/F.h', '#include "AppKit/B.h"\n'],
    ['Classes/D.h', '#include "Backends/Cairo/F.h"\n#include "Nowhere.h"\n'],
  ]);
  assert.deepEqual(
    objections(sources).map((each) => each.split(': ')[0]),
    [
      'Platform/Foundation/A.h:1',
      'Backends/Cairo/C.cpp:2',
      'Backends/Canvas/E.cpp:1',
      'Classes/D.h:1',
      'Classes/D.h:2',
    ],
  );
});

test('a cycle of three files is seen', () => {
  const sources = new Map([
    ['Platform/Foundation/A.h', '#include "Foundation/B.h"\n'],
    ['Platform/Foundation/B.h', '#include "Foundation/C.h"\n'],
    ['Platform/Foundation/C.h', '#include "Foundation/A.h"\n'],
  ]);
  assert.equal(cycle(sources)?.length, 4);
});

test('forbidden words count in code alone', () => {
  const sources = new Map([['A.cpp', '// getenv\nauto text = "getenv";\n/* getenv\n */ getenv("A");\n']]);
  assert.deepEqual(linesMatching(sources, /getenv/), ['A.cpp:4: getenv(   );']);
});
