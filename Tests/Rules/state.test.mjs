// What the platform keeps is kept in a session: nothing below the hosts is shared by all of a process and changes.
// This reads the sources, those of the page's backend too; a test of the native build reads the symbols (symbols.mjs).
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { codeOf, readSources } from './sources.mjs';
import { objectionsTo, variablesOf, constants } from './symbols.mjs';

const sources = readSources('Platform', 'Classes', 'Backends');

// Declarations that make a variable of the process or of a thread which can change, as "path:line: text".
function processWideVariables(files) {
  const found = [];
  for (const [path, text] of files) {
    codeOf(text).split('\n').forEach((line, index) => {
      if (isProcessWide(line)) found.push(`${path}:${index + 1}: ${line.trim()}`);
    });
  }
  return found;
}

function isProcessWide(line) {
  if (/\bthread_local\b/.test(line)) return true;
  // The type and the name of what is declared; what has parentheses before its value is a function.
  const declared = /^([^(=;{]*[\w>*&])\s*(\[\w*\]\s*)*[=;{]/.exec(line.replace(/\boperator\b[^(]*/, 'operator'))?.[1];
  if (declared === undefined || /\bconstexpr\b/.test(declared)) return false;
  const isStatic = /^\s*(inline\s+)?static\s/.test(declared);
  const isAtNamespaceScope =
    /^\w.*[\w>*&]\s+[*&]?\w+$/.test(declared) &&
    !/^(using|namespace|class|struct|enum|union|template|typedef|friend|return)\b/.test(declared);
  if (!isStatic && !isAtNamespaceScope) return false;
  // A pointer to what is constant may itself change.
  return !/\bconst\b/.test(declared) || /\*\s*\w+$/.test(declared);
}

test('nothing below the hosts is kept for a whole process but the pointer to a thread’s session', () => {
  assert.deepEqual(
    processWideVariables(sources).map((each) => each.replace(/:\d+:/, ':')),
    [
      'Platform/Foundation/PlatformSession.cpp: thread_local constinit PlatformSession* PlatformSession::current_ = nullptr;',
      'Platform/Foundation/PlatformSession.h: static thread_local constinit PlatformSession* current_;',
    ],
  );
});

test('each constant that the native build may make at run time is declared as one', () => {
  const code = [...sources.values()].map(codeOf).join('\n');
  for (const name of constants) {
    const variable = name.split('::').at(-1);
    assert.match(code, new RegExp(`\\bconst\\b[^;(=]*\\b${variable}\\b`), name);
  }
});

test('variables of a process are seen', () => {
  const changing = [
    'unsigned long newestVersion = 1;',
    'std::vector<std::shared_ptr<Context>> saved;',
    'std::map<int, int> table{};',
    'inline int count = 0;',
    'int counts[4];',
    'const char* name = "";',
    'std::shared_ptr<Context> current;',
    'extern int shared;',
    '  static Memo memo;',
    '  static auto* open = new Stack;',
    '  static std::string last{};',
    '  static const char* last = "";',
    '  static inline int count = 0;',
    '  thread_local Handler handler;',
  ];
  for (const line of changing) assert.equal(processWideVariables(new Map([['A.cpp', line]])).length, 1, line);
});

test('constants, functions, types and members are no variables of a process', () => {
  const others = [
    'constexpr double pi = 3.14;',
    'inline constexpr const char* key = "key";',
    'const CGColorRef red = CGColorCreateGenericRGB(1, 0, 0, 1);',
    'static const std::vector<Run> runs;',
    '  static const std::string text;',
    '  static NSRunLoop& mainRunLoop();',
    '  static Value undefined();      // the page’s',
    'std::string NSFormatDouble(double value);',
    'bool operator==(const A& a, const B& b);',
    'using Lines = std::vector<std::string>;',
    'class CairoText;',
    'struct FontFace {',
    'enum class Kind { a, b };',
    'namespace zelkon {',
    'extern "C" {',
    'template <typename T>',
    'int* f() { return nullptr; }',
    '  int count = 0;',
    '}  // namespace zelkon',
  ];
  assert.deepEqual(processWideVariables(new Map([['A.cpp', others.join('\n')]])), []);
});

const symbol = (section, name) => `0000000000000010 l     O ${section}\t0000000000000008 ${name}`;
const current = '0000000000000000 g       .tbss\t0000000000000008 zelkon::PlatformSession::current_';
const stated = constants.map((name) => symbol('.bss', name));

test('symbols of variables are seen wherever they lie', () => {
  for (const section of ['.bss', '.data', '.tbss', '.tdata', '.bss._ZN6zelkon1xE', '.data.rel.local']) {
    const listing = [...stated, current, symbol(section, 'zelkon::f(int (*)(char), zelkon::A const&) const::memo')].join('\n');
    assert.deepEqual(objectionsTo(variablesOf(listing)), ['zelkon::f::memo is kept for the whole process'], section);
  }
});

test('tables that the loader locks, guards of constants and the compiler’s references are no variables', () => {
  const listing = [
    ...stated,
    current,
    symbol('.data.rel.ro._ZTVN6zelkon1AE', 'vtable for zelkon::A'),
    symbol('.rodata', 'zelkon::kTable'),
    symbol('.text', 'zelkon::f()'),
    symbol('.bss', 'guard variable for zelkon::kCGColorWhite()::color'),
    symbol('.data.rel.local.DW.ref.__gxx_personality_v0', '.hidden DW.ref.__gxx_personality_v0'),
    '0000000000000000 l    d  .bss\t0000000000000000 .bss',
  ].join('\n');
  assert.deepEqual(objectionsTo(variablesOf(listing)), []);
});

test('a constant that has gone is no longer stated', () => {
  assert.deepEqual(objectionsTo(variablesOf([...stated.slice(1), current].join('\n'))), [
    `${constants[0]} is stated and not there`,
  ]);
});
