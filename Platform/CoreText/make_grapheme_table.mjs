#!/usr/bin/env node
// Writes GraphemeTable.h beside this file from the Unicode Character Database of Debian's package unicode-data. Run it
// with node after a new version of Unicode and look at what changed in Annex #29's rules as well; builds take the header
// as it stands.
//
//   node make_grapheme_table.mjs [folder of the data]
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

// The classes that the table holds, by their numbers. Of the others, precomposed Hangul syllables (LV, LVT) and regional
// indicators follow from their code points, and CR, LF and ZWJ are one each.
const classes = ['Extend', 'SpacingMark', 'Extended_Pictographic', 'Control', 'Prepend', 'L', 'V', 'T'];
const others = ['CR', 'LF', 'ZWJ', 'Regional_Indicator', 'LV', 'LVT'];

// [first, last, class] of every line that gives one, classes that are not asked for left out.
function rangesOf(text) {
  return text.split('\n').flatMap((line) => {
    const match = /^([0-9A-F]+)(?:\.\.([0-9A-F]+))?\s*;\s*(\w+)/.exec(line);
    if (!match || ![...classes, ...others].includes(match[3])) return [];
    return [[parseInt(match[1], 16), parseInt(match[2] ?? match[1], 16), match[3]]];
  });
}

// Neighbours of one class as one range, in ascending order.
function merged(ranges) {
  const result = [];
  for (const [first, last, kind] of ranges.sort((a, b) => a[0] - b[0])) {
    const before = result.at(-1);
    if (before && first <= before[1]) throw new Error(`two classes for ${first.toString(16)}`);
    if (before && first === before[1] + 1 && kind === before[2]) before[1] = last;
    else result.push([first, last, kind]);
  }
  return result;
}

// Seven bits a byte, the lowest first, the highest bit set in all but the last.
function bytesOf(number) {
  return number < 128 ? [number] : [(number & 127) | 128, ...bytesOf(number >> 7)];
}

// The header's text, made of the files in a folder laid out as Unicode's own.
export function graphemeTable(folder) {
  const properties = readFileSync(join(folder, 'auxiliary/GraphemeBreakProperty.txt'), 'utf8');
  const emoji = readFileSync(join(folder, 'emoji/emoji-data.txt'), 'utf8');
  const version = /GraphemeBreakProperty-([0-9.]+)\.txt/.exec(properties)[1];
  const copyright = /^# (© .*)$/m.exec(properties)[1];
  const ranges = merged([...rangesOf(properties), ...rangesOf(emoji)]).filter(([, , kind]) => classes.includes(kind));
  let next = 0;
  const bytes = ranges.flatMap(([first, last, kind]) => {
    const gap = first - next;
    next = last + 1;
    return [...bytesOf(gap), ...bytesOf((last - first) * classes.length + classes.indexOf(kind))];
  });
  const rows = [''];
  for (const [index, byte] of bytes.entries()) {
    const word = `${byte}${index < bytes.length - 1 ? ',' : ''}`;
    const row = rows.at(-1);
    if (row.length + word.length + 5 > 120) rows.push(word);
    else rows[rows.length - 1] = row ? `${row} ${word}` : word;
  }
  return `// Written by make_grapheme_table.mjs: the grapheme break properties and the pictographs of Unicode ${version}.
// Data from the Unicode Character Database, ${copyright}
// For terms of use, see https://www.unicode.org/terms_of_use.html
#pragma once

#include <cstdint>

namespace zelkon {

// Ascending ranges of code points, two numbers each: how many code points lie between the range before and this one,
// and (its length - 1) * graphemeTableClasses + its class. Numbers have seven bits a byte, the lowest first, and the
// highest bit set in all bytes but their last. The classes are
${classes.map((name, index) => `//   ${index} ${name}`).join('\n')}
constexpr unsigned graphemeTableClasses = ${classes.length};
constexpr unsigned graphemeTableRanges = ${ranges.length};
// clang-format off
constexpr uint8_t graphemeTable[] = {
${rows.map((row) => `    ${row}`).join('\n')}};
// clang-format on

}  // namespace zelkon
`;
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  writeFileSync(new URL('GraphemeTable.h', import.meta.url), graphemeTable(process.argv[2] ?? '/usr/share/unicode'));
}
