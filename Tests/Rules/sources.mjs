// What the rules' tests share: the tree's C++ files and what each of them includes.
import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { dirname, join, sep } from 'node:path';
import { fileURLToPath } from 'node:url';

export const root = join(dirname(fileURLToPath(import.meta.url)), '..', '..');
export const rooms = ['Foundation', 'CoreGraphics', 'CoreText', 'CoreImage', 'QuartzCore', 'AppKit', 'WebKit'];

// Every file below the folders, as paths from the root with forward slashes.
export function filesBelow(...folders) {
  return folders.filter((folder) => existsSync(join(root, folder))).flatMap((folder) =>
    readdirSync(join(root, folder), { withFileTypes: true }).flatMap((entry) => {
      const path = join(folder, entry.name);
      return entry.isDirectory() ? filesBelow(path) : [path.split(sep).join('/')];
    }),
  );
}

export const isSource = (path) => /\.(h|cpp)$/.test(path);

export function readSources(...folders) {
  return new Map(filesBelow(...folders).filter(isSource).map((path) => [path, readFileSync(join(root, path), 'utf8')]));
}

// Each #include of a file: the name, its line, and whether it is written in angle brackets.
export function includesOf(text) {
  return text.split('\n').flatMap((line, index) => {
    const match = /^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)/.exec(line);
    return match ? [{ name: match[1] ?? match[2], line: index + 1, angled: match[2] !== undefined }] : [];
  });
}

// The file of the tree that a quoted include means, or null.
export function resolveInclude(name, sources) {
  return [`Platform/${name}`, name, `Tests/${name}`, `include/${name}`].find((path) => sources.has(path)) ?? null;
}

// A platform room's place from the left; the plug-in comes after all of them. Anything else has none.
export function rankOf(path) {
  const [top, room] = path.split('/');
  if (top === 'Platform') return rooms.indexOf(room);
  return top === 'Classes' ? rooms.length : undefined;
}

// Why a file may not include another, or null where it may.
export function objection(from, to) {
  const rank = rankOf(from);
  if (rank !== undefined) {
    const other = rankOf(to);
    return other !== undefined && other <= rank ? null : 'a room includes only rooms to its left';
  }
  const [top, backend] = from.split('/');
  if (top === 'Backends') {
    if (to.startsWith('Platform/') || to.startsWith(`Backends/${backend}/`)) return null;
    return 'a backend includes only the platform and itself';
  }
  if (top === 'Hosts' && to.startsWith('Tests/')) return 'a host does not include tests';
  return null;
}

export function objections(sources) {
  const found = [];
  for (const [path, text] of sources) {
    for (const { name, line, angled } of includesOf(text)) {
      if (angled) continue;
      const target = resolveInclude(name, sources);
      const reason = target === null ? 'there is no such file' : objection(path, target);
      if (reason) found.push(`${path}:${line}: "${name}": ${reason}`);
    }
  }
  return found;
}

// The first cycle of includes between files as a list that ends where it begins, or null.
export function cycle(sources) {
  const done = new Set();
  const open = [];
  const visit = (path) => {
    if (open.includes(path)) return [...open.slice(open.indexOf(path)), path];
    if (done.has(path)) return null;
    open.push(path);
    for (const { name, angled } of includesOf(sources.get(path))) {
      const target = angled ? null : resolveInclude(name, sources);
      const found = target === null ? null : visit(target);
      if (found) return found;
    }
    open.pop();
    done.add(path);
    return null;
  };
  for (const path of sources.keys()) {
    const found = visit(path);
    if (found) return found;
  }
  return null;
}

// Text with comments and the contents of string and character literals blanked, line numbers kept.
export function codeOf(text) {
  return text.replace(/\/\/[^\n]*|\/\*[^]*?\*\/|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])'/g, (match) =>
    match.replace(/[^\n]/g, ' '),
  );
}

// The lines of the given code that match, as "path:line: text".
export function linesMatching(sources, pattern) {
  const found = [];
  for (const [path, text] of sources) {
    codeOf(text)
      .split('\n')
      .forEach((line, index) => {
        if (pattern.test(line)) found.push(`${path}:${index + 1}: ${line.trim()}`);
      });
  }
  return found;
}
