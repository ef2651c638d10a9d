// A static server for the demonstration page and the page tests: loopback only, right media types, and the strictest
// content security policy that the element works under. A path is looked for in each folder in turn.
import { createReadStream, statSync } from 'node:fs';
import { createServer } from 'node:http';
import { extname, join, normalize, resolve, sep } from 'node:path';
import { pathToFileURL } from 'node:url';

export const contentSecurityPolicy = "default-src 'self'; script-src 'self' 'wasm-unsafe-eval'";

const types = {
  '.css': 'text/css; charset=utf-8',
  '.html': 'text/html; charset=utf-8',
  '.js': 'text/javascript; charset=utf-8',
  '.json': 'application/json; charset=utf-8',
  '.map': 'application/json; charset=utf-8',
  '.mjs': 'text/javascript; charset=utf-8',
  '.pdf': 'application/pdf',
  '.png': 'image/png',
  '.svg': 'image/svg+xml',
  '.ts': 'text/plain; charset=utf-8',
  '.wasm': 'application/wasm',
};

// The file that a request's path names in the first folder that has it, or null. Never outside of the folders.
export function fileForPath(path, folders) {
  let decoded;
  try {
    decoded = decodeURIComponent(path);
  } catch {
    return null;
  }
  if (decoded.includes('\0')) return null;
  const relative = normalize('/' + decoded.replaceAll('\\', '/'));
  for (const folder of folders) {
    const root = resolve(folder);
    let file = join(root, relative);
    if (file !== root && !file.startsWith(root + sep)) continue;
    let status = statSync(file, { throwIfNoEntry: false });
    if (status?.isDirectory()) {
      file = join(file, 'index.html');
      status = statSync(file, { throwIfNoEntry: false });
    }
    if (status?.isFile()) return { file, size: status.size };
  }
  return null;
}

// Starts serving and resolves to the server once it listens. Port 0 takes any free one.
export function serve(folders, port = 0) {
  const server = createServer((request, response) => {
    if (request.method !== 'GET' && request.method !== 'HEAD') {
      response.writeHead(405, { Allow: 'GET, HEAD' }).end();
      return;
    }
    const found = fileForPath(request.url.split(/[?#]/, 1)[0], folders);
    const headers = {
      'Cache-Control': 'no-cache',
      'Content-Security-Policy': contentSecurityPolicy,
      'X-Content-Type-Options': 'nosniff',
    };
    if (!found) {
      response.writeHead(404, { ...headers, 'Content-Type': 'text/plain; charset=utf-8' }).end('Not found\n');
      return;
    }
    const type = types[extname(found.file)] ?? 'application/octet-stream';
    response.writeHead(200, { ...headers, 'Content-Type': type, 'Content-Length': found.size });
    if (request.method === 'HEAD') {
      response.end();
      return;
    }
    createReadStream(found.file)
      .on('error', () => response.destroy())
      .pipe(response);
  });
  return new Promise((fulfil, reject) => {
    server.once('error', reject);
    server.listen(port, '127.0.0.1', () => fulfil(server));
  });
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  const folders = process.argv.slice(2);
  const at = folders.indexOf('--port');
  const port = at < 0 ? 8080 : Number(folders.splice(at, 2)[1]);
  try {
    const server = await serve(folders, port);
    console.log(`Serving http://127.0.0.1:${server.address().port}/ (Control-C stops)`);
  } catch (error) {
    console.error(`serve: ${error.message}`);
    process.exit(1);
  }
}
