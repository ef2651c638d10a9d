import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { request } from 'node:http';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { countsOfJUnit, failuresOfJUnit } from '../../Tools/junitcounts.mjs';
import { contentSecurityPolicy, fileForPath, serve } from '../../Tools/serve.mjs';
import { countsOfTap } from '../../Tools/tapcounts.mjs';
import { root } from './sources.mjs';

const temporary = (context) => {
  const folder = mkdtempSync(join(tmpdir(), 'zelkon-rules-'));
  context.after(() => rmSync(folder, { recursive: true, force: true }));
  return folder;
};

test('failed and skipped tests of ctest are counted apart', () => {
  const report = '<?xml version="1.0"?>\n<testsuite name="a"\n\ttests="9"\n\tfailures="2"\n\tdisabled="1"\n\tskipped="3"\n>';
  assert.deepEqual(countsOfJUnit(report), [3, 2, 4]);
  assert.throws(() => countsOfJUnit(''));
});

test("cancelled tests of node's runner count as failed", () => {
  const report = '# tests 10\n# suites 0\n# pass 5\n# fail 1\n# cancelled 2\n# skipped 1\n# todo 1\n';
  assert.deepEqual(countsOfTap(report), [5, 3, 2]);
  assert.throws(() => countsOfTap('TAP version 13\n'));
});

test('a failing test of either runner is counted as such', (context) => {
  const folder = temporary(context);
  const file = join(folder, 'a.test.mjs');
  writeFileSync(file, "import { test } from 'node:test';\ntest('a', () => {});\ntest('b', () => { throw new Error('b'); });\n");
  const environment = { ...process.env };
  delete environment.NODE_TEST_CONTEXT;
  const result = spawnSync(process.execPath, ['--test', '--test-reporter=tap', file], { env: environment, encoding: 'utf8' });
  assert.equal(result.status, 1);
  assert.deepEqual(countsOfTap(result.stdout), [1, 1, 0]);

  writeFileSync(
    join(folder, 'CTestTestfile.cmake'),
    'add_test(good "true")\nadd_test(bad "sh" "-c" "echo \\"<broken> & done\\"; exit 1")\nadd_test(off "true")\nset_tests_properties(off PROPERTIES DISABLED TRUE)\n',
  );
  const report = join(folder, 'report.xml');
  assert.notEqual(spawnSync('ctest', ['--test-dir', folder, '--output-junit', report]).status, 0);
  assert.deepEqual(countsOfJUnit(readFileSync(report, 'utf8')), [1, 1, 1]);
  assert.deepEqual(failuresOfJUnit(readFileSync(report, 'utf8')), [{ name: 'bad', output: '<broken> & done' }]);
});

test('the two commands refuse what they do not know and explain themselves', () => {
  for (const [command, ...words] of [['run', '--port', '70000'], ['run', '--frobnicate'], ['test', '--only', 'nothing'], ['test', 'x']]) {
    const result = spawnSync(join(root, command), words, { encoding: 'utf8' });
    assert.equal(result.status, 2, `${command} ${words.join(' ')}`);
    assert.match(result.stderr, new RegExp(`^${command}: `));
  }
  for (const command of ['run', 'test']) {
    assert.match(execFileSync(join(root, command), ['--help'], { encoding: 'utf8' }), /^Usage: /);
  }
});

// Sources the setup with the given commands in front of the real ones and runs a line of shell after it.
function runSetup(context, commands, line) {
  const folder = temporary(context);
  for (const [name, text] of Object.entries(commands)) {
    writeFileSync(join(folder, name), `#!/bin/sh\n${text}\n`, { mode: 0o755 });
  }
  const environment = { ...process.env, PATH: `${folder}:${process.env.PATH}`, FOLDER: folder };
  const script = `. Tools/setup.sh; ${line}`;
  const result = spawnSync('bash', ['-c', script], { cwd: root, env: environment, encoding: 'utf8' });
  return { ...result, folder };
}

test('missing packages without a way to install them are named in one line', (context) => {
  const { status, stderr, stdout } = runSetup(
    context,
    { 'dpkg-query': 'case "$*" in *libicu-dev) ;; *) echo installed ;; esac', id: 'echo 1000', sudo: 'exit 1' },
    'setup_packages',
  );
  assert.equal(status, 1);
  assert.equal(stdout, '');
  assert.equal(
    stderr,
    'Missing packages: libicu-dev. Install them as root: apt-get install --no-install-recommends libicu-dev\n',
  );
});

test('nothing is installed where nothing is missing, and node may come from anywhere', (context) => {
  const { status, stdout, folder } = runSetup(
    context,
    {
      'dpkg-query': 'case "$*" in *nodejs | *npm) ;; *) echo installed ;; esac',
      'apt-get': 'touch "$FOLDER/called"',
      node: '',
      npm: '',
    },
    'setup_packages',
  );
  assert.equal(status, 0);
  assert.equal(stdout, '');
  assert.ok(!existsSync(join(folder, 'called')));
});

test('a failing stage shows its output and ends the command', (context) => {
  const { status, stdout, stderr } = runSetup(context, {}, 'stage "rules: a stage" sh -c "echo broken; exit 7"; echo on');
  rmSync(join(root, 'build/log/rules-a-stage.txt'), { force: true });
  assert.equal(status, 7);
  assert.match(stdout, /FAILED/);
  assert.doesNotMatch(stdout, /^on$/m);
  assert.match(stderr, /broken/);
});

test('the lock file names no registry', () => {
  assert.doesNotMatch(readFileSync(join(root, 'package-lock.json'), 'utf8'), /"resolved"|https?:\/\/[^"]*registry/);
});

test('the server finds files in the first folder that has them and never outside', (context) => {
  const folder = temporary(context);
  mkdirSync(join(folder, 'one'));
  mkdirSync(join(folder, 'two'));
  writeFileSync(join(folder, 'secret'), 'secret');
  writeFileSync(join(folder, 'one', 'a.js'), '1');
  writeFileSync(join(folder, 'two', 'a.js'), '22');
  writeFileSync(join(folder, 'two', 'index.html'), '<p>');
  const folders = [join(folder, 'one'), join(folder, 'two')];
  assert.equal(fileForPath('/a.js', folders).size, 1);
  assert.equal(fileForPath('/', folders).file, join(folder, 'two', 'index.html'));
  for (const path of ['/../secret', '/%2e%2e/secret', '/..%2fsecret', '/..\\secret', '/%00', '/%zz', '/b']) {
    assert.equal(fileForPath(path, folders), null, path);
  }
});

test('the server sends the media type and the policy, on loopback only', async (context) => {
  const folder = temporary(context);
  writeFileSync(join(folder, 'a.wasm'), Buffer.from([0, 97, 115, 109]));
  const server = await serve([folder]);
  context.after(() => server.close());
  const { address, port } = server.address();
  assert.equal(address, '127.0.0.1');
  const get = (path, method = 'GET') =>
    new Promise((fulfil, reject) => {
      request({ host: address, port, path, method, agent: false }, (response) => {
        const chunks = [];
        response.on('data', (chunk) => chunks.push(chunk));
        response.on('end', () => fulfil({ status: response.statusCode, headers: response.headers, body: Buffer.concat(chunks) }));
      })
        .on('error', reject)
        .end();
    });
  const found = await get('/a.wasm?again');
  assert.equal(found.status, 200);
  assert.equal(found.headers['content-type'], 'application/wasm');
  assert.equal(found.headers['content-security-policy'], contentSecurityPolicy);
  assert.deepEqual([...found.body], [0, 97, 115, 109]);
  assert.equal((await get('/b')).status, 404);
  assert.equal((await get('/a.wasm', 'POST')).status, 405);
  assert.equal((await get('/a.wasm', 'HEAD')).body.length, 0);
});
