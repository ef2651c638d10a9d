// The copyright and licences of what the compiler links into the page's module, taken from what the installed package of
// Emscripten states file by file (in Debian's machine-readable form) and the common licences that it names.
import { existsSync, readFileSync } from 'node:fs';

const line = '='.repeat(100);

// The parts of Emscripten's tree that a module is made of.
const linked = [/^\*$/, /^system\/lib\/(libc|libcxx|libcxxabi|libunwind|compiler-rt)\//, /^system\/lib\/(emmalloc|sbrk)\.c$/];

// Paragraphs as maps from field to text, the first line of a field apart from those that continue it.
export function paragraphs(text) {
  return text.split(/\n(?:[ \t]*\n)+/).map((paragraph) => {
    const fields = new Map();
    let field;
    for (const each of paragraph.split('\n')) {
      const match = /^([A-Za-z-]+):[ \t]*(.*)$/.exec(each);
      if (match) fields.set((field = match[1]), [match[2]]);
      else if (field && /^[ \t]/.test(each)) fields.get(field).push(each);
    }
    return fields;
  });
}

const words = (lines) => lines.join(' ').split(/[\s,]+/).filter((word) => word !== '');

// The paragraphs on files that match, and those on the licences that these name.
export function noticesOf(text, patterns) {
  const all = paragraphs(text);
  const files = all.filter((each) => each.has('Files') && words(each.get('Files')).some((file) => patterns.some((pattern) => pattern.test(file))));
  const nameOf = (each) => (each.get('License')?.[0] ?? '').trim().toLowerCase();
  const names = new Set(files.flatMap((each) => words([nameOf(each)])));
  const licences = all.filter((each) => !each.has('Files') && names.has(nameOf(each)));
  const print = (fields) => [...fields].map(([field, [first, ...rest]]) => [`${field}: ${first}`.trimEnd(), ...rest].join('\n')).join('\n');
  return [...files, ...licences].map(print).join('\n\n');
}

// Throws where the package's statement is missing.
export function pageNotices(file = '/usr/share/doc/emscripten/copyright') {
  const notices = noticesOf(readFileSync(file, 'utf8'), linked);
  const common = [...new Set(notices.match(/\/usr\/share\/common-licenses\/[A-Za-z]+-[0-9.]*[0-9]/g) ?? [])].sort();
  const texts = common.filter((path) => existsSync(path)).map((path) => `\n${line}\n${path}\n${line}\n\n${readFileSync(path, 'utf8')}`);
  return `zelkon-plot.wasm holds parts of the run-time libraries of Emscripten: its C library (musl), libc++, libc++abi,
libunwind, compiler-rt and its memory allocator.

${line}\n\n${notices}\n${texts.join('')}`;
}
