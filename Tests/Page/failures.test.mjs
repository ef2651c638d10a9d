// Charts fail, and so does what a page makes of that: its charts come back, or show the elements' own content, without end
// of neither.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';

const pie = '<zelkon-plot id="pie" plot="pie"><p id="inside">No chart</p></zelkon-plot>';

// Counts the instances of the module, and makes calls of it fail: `failing` names the export that does and says how often.
const instances = `
let started = 0, failures = 0, failing = {};
const instantiate = WebAssembly.instantiate;
WebAssembly.instantiate = async (...all) => {
  const { exports } = await instantiate(...all);
  ++started;
  const entries = Object.entries(exports).map(([name, value]) => [
    name,
    typeof value !== 'function' ? value : (...values) => {
      if (failing[name]) {
        --failing[name];
        throw new WebAssembly.RuntimeError('made to fail');
      }
      return value(...values);
    },
  ]);
  return { exports: Object.fromEntries(entries) };
};
// The page's own clock, which a test can put forward.
let ahead = 0;
const now = performance.now.bind(performance);
performance.now = () => now() + ahead;
const error = console.error;
console.error = (...what) => {
  failures += /start over/.test(what[0]);
  error(...what);
};
const settled = () => new Promise((resolve) => setTimeout(resolve, 500));
const over = (clientX, clientY) => {
  const event = new PointerEvent('pointermove', { clientX, clientY, isPrimary: true, pointerType: 'mouse' });
  pie.shadowRoot.querySelector('canvas').dispatchEvent(event);
};
// Carries the call out at the bottom of a full stack and so many frames further up each time; says how often an instance
// has failed.
const exhaust = async (call) => {
  call(); // what has not run yet takes more room
  const before = failures;
  for (let above = 0; above < 150; ++above) {
    let up = 0;
    const fall = () => {
      try {
        fall();
      } catch {}
      if (up++ !== above) return;
      try {
        call();
      } catch {}
    };
    fall();
    await new Promise((resolve) => setTimeout(resolve));
    while (started <= failures) await frames(1);
    ahead += 20_000;
  }
  await settled();
  return failures - before;
};
`;

const blue = 'pixel(pie, 150, 60)';
const isShown = async (page, message) => {
  const [red, , depth, alpha] = await page.evaluate(`frames(3).then(() => ${blue})`);
  assert.ok(alpha === 255 && depth > red + 60, `${message}: ${[red, depth, alpha]}`);
};

// Draws what it is given.
const isAlive = async (page, message) => {
  await page.evaluate('pie.SetPlotData([])');
  const [red, , depth, alpha] = await page.evaluate(`frames(3).then(() => ${blue})`);
  assert.ok(alpha === 255 && Math.abs(depth - red) <= 1, `${message}: ${[red, depth, alpha]}`);
  await page.evaluate('pie.SetPlotData(three)');
  await isShown(page, message);
};

test('failures', async (context) => {
  const browser = await openBrowser(context);
  const open = async (script = '') => {
    const page = await browser.open(pie, instances + script);
    await page.evaluate('start()');
    await isShown(page, 'at first');
    return page;
  };
  const startOver = (page) => page.lines.filter((line) => line.includes('start over')).length;

  const reporters = {
    'a console that throws': 'console.error = console.warn = () => { throw new Error("no console"); };',
    'no console at all': 'Object.defineProperty(window, "console", { get() { throw new Error("no console"); } });',
    'a reportError that throws': 'window.reportError = () => { throw new Error("no report"); };',
    'no reportError': 'delete window.reportError;',
    'an onerror that throws': 'window.onerror = () => { throw new Error("no handler"); };',
  };
  for (const [name, script] of Object.entries(reporters)) {
    await context.test(`${name}: a failure is survived with the data`, async () => {
      const page = await open(script);
      await page.evaluate('failing.zelkon_mouse_moved = 1');
      await page.mouse.move(150, 60);
      await page.evaluate('settled()');
      assert.equal(await page.evaluate('started'), 2);
      await isShown(page, 'afterwards');
      await isAlive(page, 'afterwards');
    });

    await context.test(`${name}: what is logged and what page functions throw does no harm`, async () => {
      const page = await open(`${script} window.SpendingTrendsSliceHoverIndex = () => { calls.push(['hover']); throw new Error('from the page'); };`);
      await page.evaluate('pie.SetPlotData([{ key: "A", get value() { throw new Error("no amount"); } }]), pie.SetPlotData(7)');
      await page.evaluate('document.body.append(Object.assign(document.createElement("zelkon-plot"), { id: "unknown" }))');
      await page.mouse.move(150, 60);
      await page.mouse.move(150, 62);
      await page.evaluate('settled()');
      assert.equal(await page.evaluate('started'), 1);
      assert.equal((await page.evaluate('calls')).filter(([call]) => call === 'hover').length, 1);
      await isShown(page, 'afterwards');
      await isAlive(page, 'afterwards');
    });
  }

  await context.test('drawing that throws, and a console that throws at that, do no harm', async () => {
    const page = await open('console.error = () => { throw new Error("no console"); };');
    await page.evaluate(() => {
      const kinds = [CanvasRenderingContext2D.prototype, OffscreenCanvasRenderingContext2D.prototype];
      const fills = kinds.map(({ fill }) => fill);
      for (const kind of kinds) kind.fill = () => { throw new Error('no drawing'); };
      pie.SetPlotData([]);
      return frames(3).then(() => kinds.forEach((kind, index) => { kind.fill = fills[index]; }));
    });
    assert.equal(await page.evaluate('started'), 1);
    await isAlive(page, 'afterwards');
  });

  await context.test('a console that calls the chart again for each of its lines comes to an end', async () => {
    const page = await open();
    await page.evaluate(() => {
      const bad = [{ get value() { throw new Error('no amount'); } }];
      const { warn } = console;
      console.warn = () => pie.SetPlotData(bad);
      pie.SetPlotData(bad);
      console.warn = warn;
      return settled();
    });
    await isAlive(page, 'afterwards');
  });

  await context.test('a language that engines do not know is no failure of the keyboard', async () => {
    const page = await open();
    await page.evaluate(() => { document.documentElement.lang = 'en_US'; });
    await page.keyboard.press('Tab');
    await page.keyboard.press('ArrowRight');
    assert.equal(await page.evaluate(() => pie.shadowRoot.querySelector('[aria-live]').textContent), 'Rent, 1,200, 60%');
    assert.equal(await page.evaluate('started'), 1);
  });

  await context.test('a call on a stack that is nearly full ends in an error of the page or a fresh instance, at any depth', async () => {
    const page = await open();
    const calls = [
      () => pie.SetPlotData(three),
      () => pie.SetPlotData([{ key: 'A', value: 1 }, null]),
      () => pie.SetPlotData([{ get value() { throw new Error('no amount'); } }]),
      () => pie.SetPlotOptions([{ key: 'CurrencyID', value: 'USD' }]),
      () => pie.SliceColorAtIndex(1, 3, {}),
      () => pie.HoverEntryAtIndex(true, 1),
      () => over(150, 60) || over(2, 2),
    ];
    for (const call of calls) {
      const failures = await page.evaluate(`exhaust(${call})`);
      await isAlive(page, String(call));
      assert.ok(failures > 0, `${call} has had room all the time`);
    }
  });

  const lines = (page, text) => page.lines.filter((line) => line.startsWith('zelkon-plot: ') && line.includes(text)).length;
  const restarted = 'start over';
  const givenUp = 'own content';
  // What fails, in a chart of which kind, and again and again.
  for (const [name, plot] of [['zelkon_read_periods', 'spendingOverTimeBarOrLine'], ['zelkon_compose', 'pie'], ['zelkon_create', 'pie']]) {
    await context.test(`what always fails (${name}) is started anew three times in ten seconds, and later with another element`, async () => {
      const page = await open();
      await page.evaluate(([name, plot]) => {
        failing[name] = Infinity;
        pie.setAttribute('plot', plot);
      }, [name, plot]);
      await page.waitForFunction(() => started >= 4, undefined, { timeout: 10_000 });
      await page.evaluate('settled().then(settled).then(settled)');
      assert.equal(await page.evaluate('started'), 4);
      assert.deepEqual([lines(page, restarted), lines(page, givenUp)], [3, 1], page.lines.join('\n'));
      assert.ok(await page.locator('#inside').isVisible());

      const add = () =>
        page.evaluate(() => {
          const other = document.createElement('zelkon-plot');
          Object.assign(other, { id: 'other', className: 'chart' }).setAttribute('plot', 'pie');
          other.style.cssText = 'display: block; width: 300px; height: 200px';
          document.querySelector('#other')?.remove();
          document.body.append(other);
          other.SetPlotData(three);
          return settled();
        });
      await page.evaluate('failing = {}, ahead += 5000');
      await add();
      assert.equal(await page.evaluate('started'), 4, 'too early');
      await page.evaluate('ahead += 5000');
      await add();
      assert.equal(await page.evaluate('started'), 5);
      assert.ok(!(await page.locator('#inside').isVisible()));
      const [red, , depth] = await page.evaluate('pixel(other, 150, 60)');
      assert.ok(depth > red + 60, 'the other has its data');
      await page.evaluate('calls.length = 0, pie.setAttribute("plot", "pie"), start()');
      await isShown(page, 'at last');
      assert.equal(lines(page, restarted), 3);
    });
  }

  await context.test('one element that cannot start keeps no other from it', async () => {
    const page = await open();
    await page.evaluate(() => {
      const others = [1, 2].map((number) => {
        const other = document.createElement('zelkon-plot');
        Object.assign(other, { id: `other${number}` }).setAttribute('plot', 'pie');
        other.style.cssText = 'display: block; width: 300px; height: 200px';
        document.body.append(other);
        other.SetPlotData(three);
        return other;
      });
      others[0].shadowRoot.querySelector('canvas').getContext = () => { throw new Error('no context'); };
      failing.zelkon_mouse_moved = 1;
      over(150, 60);
      return settled();
    });
    for (const id of ['pie', 'other2']) {
      const [red, , depth] = await page.evaluate(`pixel(${id}, 150, 60)`);
      assert.ok(depth > red + 60, id);
    }
  });

  await context.test('what a page calls and adds while the charts start over is not lost', async () => {
    const page = await open();
    await page.evaluate(() => {
      failing.zelkon_mouse_moved = 1;
      over(150, 60);
      pie.SetPlotData([]);
      const other = document.createElement('zelkon-plot');
      Object.assign(other, { id: 'other' }).setAttribute('plot', 'pie');
      other.style.cssText = 'display: block; width: 300px; height: 200px';
      document.body.append(other);
      other.SetPlotData(three);
      return settled();
    });
    assert.equal(await page.evaluate('started'), 2);
    const [red, , depth] = await page.evaluate('pixel(other, 150, 60)');
    assert.ok(depth > red + 60, 'the other has its data');
    const grey = await page.evaluate(blue);
    assert.ok(Math.abs(grey[2] - grey[0]) <= 1 && grey[3] === 255, `the first has the later data: ${grey}`);
  });

  await context.test('data that one chart cannot have do not take those of the others', async () => {
    const page = await open();
    await page.evaluate(() => {
      const other = document.createElement('zelkon-plot');
      Object.assign(other, { id: 'other' }).setAttribute('plot', 'pie');
      other.style.cssText = 'display: block; width: 300px; height: 200px';
      document.body.append(other);
      other.SetPlotData(three);
      // The first one fails again as it gets its data, so the second has to wait for another instance.
      failing.zelkon_mouse_moved = 1;
      over(150, 60);
      failing.zelkon_call = 1;
      return settled();
    });
    assert.equal(await page.evaluate('started'), 3);
    const [red, , depth] = await page.evaluate('pixel(other, 150, 60)');
    assert.ok(depth > red + 60, 'the second');
  });
});
