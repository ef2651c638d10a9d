// What pages do to a chart that is on show: none of it throws, leaks, or calls the page once more than it should.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { flags, metricsOf, openBrowser } from './browser.mjs';
import { chart, months, script } from './overtime.mjs';

const kinds = [
  ['bars', 12],
  ['a line', 36],
];
const displayed = ['GraphHasDisplayed'];
const pieDisplayed = ['SpendingTrendsHaveDisplayed'];

// Keeps hold of the module's memory, and counts the canvases that are drawn on off the screen.
const watching = `
let memory;
const instantiate = WebAssembly.instantiate;
WebAssembly.instantiate = async (...all) => {
  const made = await instantiate(...all);
  memory = Object.values(made.exports).find((each) => each instanceof WebAssembly.Memory);
  return made;
};
const canvases = new Set(), ended = new FinalizationRegistry((each) => canvases.delete(each));
window.OffscreenCanvas = class extends OffscreenCanvas {
  constructor(...size) {
    super(...size);
    const token = {};
    canvases.add(token);
    ended.register(this, token);
  }
};
`;

// Frames of the page come only when the test asks for them, until it lets them go.
const handDriven = `
let clock = 0, waiting = [];
const free = { request: requestAnimationFrame, cancel: cancelAnimationFrame };
window.requestAnimationFrame = (callback) => waiting.push(callback);
window.cancelAnimationFrame = () => { waiting = []; };
const tick = (milliseconds) => { clock += milliseconds; for (const each of waiting.splice(0)) each(clock); };
const release = () => {
  window.requestAnimationFrame = free.request;
  window.cancelAnimationFrame = free.cancel;
  for (const each of waiting.splice(0)) free.request.call(window, each);
};
`;

async function keptBy(page) {
  const metrics = await metricsOf(page);
  const [memory, canvases] = await page.evaluate('[memory.buffer.byteLength, canvases.size]');
  return { ...metrics, memory, canvases };
}

test('a chart survives', async (context) => {
  // Frames come as fast as the machine makes them.
  const hasty = await openBrowser(context, { args: [...flags, '--disable-frame-rate-limit', '--disable-gpu-vsync'] });
  for (const [kind, count] of kinds) {
    await context.test(`a thousand changes of its box in a row while the pointer is over ${kind}`, async () => {
      const page = await hasty.open(chart, watching + script);
      await page.evaluate((data) => show(data), months(count));
      await page.mouse.move(232, 260);
      const change = (times) =>
        page.evaluate(async (times) => {
          const canvas = chart.shadowRoot.querySelector('canvas');
          let widths = 0;
          for (let i = 1; i <= times; ++i) {
            const before = canvas.width;
            chart.style.width = `${620 + ((i * 37) % 80)}px`;
            await frames(1);
            widths += canvas.width !== before;
            if (i % 10 === 0) canvas.dispatchEvent(new PointerEvent('pointermove', { clientX: 220 + (i % 7) * 5, clientY: 260, isPrimary: true, pointerType: 'mouse' }));
          }
          return widths;
        }, times);
      await change(50);
      const before = await keptBy(page);
      // The last one or two may only show with a later frame.
      const widths = await change(1000);
      assert.ok(widths > 990, `${widths} changes`);
      const after = await keptBy(page);
      assert.equal(after.memory, before.memory);
      assert.ok(after.canvases <= before.canvases + 2, `${before.canvases} canvases became ${after.canvases}`);
      assert.ok(after.listeners <= before.listeners, `${before.listeners} listeners became ${after.listeners}`);
      assert.ok(after.nodes <= before.nodes + 20, `${before.nodes} nodes became ${after.nodes}`);
      assert.ok(after.heap < before.heap + (1 << 20), `${before.heap} bytes became ${after.heap}`);
      assert.deepEqual(await page.evaluate('calls'), [displayed]);

      // A chart that has had this size from the beginning looks the same, with a bubble and without.
      await page.evaluate('chart.style.width = "661px", frames(3)');
      await page.mouse.move(232, 260);
      const hovered = await page.evaluate('picture()');
      await page.mouse.move(790, 590);
      const rest = await page.evaluate('picture()');
      const fresh = await hasty.open(chart, `${script} document.adoptedStyleSheets[0].insertRule('#chart { width: 661px !important }', 1)`);
      await fresh.evaluate((data) => show(data), months(count));
      assert.equal(await fresh.evaluate('picture()'), rest);
      await fresh.mouse.move(232, 260);
      assert.equal(await fresh.evaluate('picture()'), hovered);
      assert.notEqual(hovered, rest);
      assert.deepEqual(page.lines, []);
    });
  }

  const browser = await openBrowser(context, { ignoreDefaultArgs: ['--disable-back-forward-cache'] });
  const digests = new Map();
  // What a chart of those data shows that nobody has disturbed.
  const undisturbed = async (data, width = 700) => {
    const key = JSON.stringify([data, width]);
    if (!digests.has(key)) {
      const page = await browser.open(chart, `${script} document.adoptedStyleSheets[0].insertRule('#chart { width: ${width}px !important }', 1)`, { reducedMotion: 'reduce' });
      await page.evaluate((data) => show(data), data);
      digests.set(key, await page.evaluate('picture()'));
    }
    return digests.get(key);
  };
  const assertClean = async (page, calls) => {
    await page.waitForTimeout(100);
    assert.deepEqual(await page.evaluate('calls'), calls);
    assert.deepEqual(await page.evaluate('errors'), []);
    assert.deepEqual(page.lines, []);
    assert.ok(!(await page.evaluate('window.told')), 'it was disturbed too late');
  };
  const away = (await browser.open('')).url();
  const watchReturn = 'addEventListener("pageshow", (event) => { window.persisted = event.persisted; });';
  const comeBack = async (page) => {
    await page.waitForURL(away);
    await page.mouse.move(790, 590);
    await page.waitForTimeout(300);
    await page.evaluate('history.back()').catch(() => {});
    await page.waitForFunction('window.persisted !== undefined');
    assert.equal(await page.evaluate('persisted'), true, 'the page was kept');
    await page.evaluate('persisted = undefined');
  };
  const leaveAndReturn = async (page) => {
    await page.evaluate(watchReturn);
    await page.goto(away);
    await comeBack(page);
  };
  // A chart to which that is done after the first frame of its opening.
  const disturbed = async (data, act) => {
    const page = await browser.open(chart, script);
    await page.evaluate(`(async () => { chart.SetPlotData(${JSON.stringify(data)}); await frames(1); window.told = calls.length; ${act} })()`);
    return page;
  };

  for (const [kind, count] of kinds) {
    const data = months(count);
    const others = months(count + 5, (index) => 900 - 40 * index);

    await context.test(`other data in the middle of the opening of ${kind}: the first ones stay`, async () => {
      const page = await browser.open(chart, handDriven + script);
      await page.evaluate(([data, others]) => (chart.SetPlotData(data), tick(0), tick(30), chart.SetPlotData(others), tick(30)), [data, others]);
      assert.deepEqual(await page.evaluate('calls'), [], 'the opening goes on');
      await page.evaluate('chart.SetPlotData([]), tick(2000), tick(16), tick(16)');
      assert.deepEqual(await page.evaluate('calls'), [displayed]);
      await page.evaluate((others) => (chart.SetPlotData(others), tick(2000), tick(16)), others);
      // The bars that were already there stand under those of the later calls; a change of the box shows one set.
      await page.evaluate('release(), chart.style.width = "640px", frames(4)');
      assert.equal(await page.evaluate('picture()'), await undisturbed(data, 640));
      await assertClean(page, [displayed]);
    });

    await context.test(`its element moved with ${kind}: it starts over, or goes on where the page moves it as it is`, async () => {
      const place = 'document.body.append(Object.assign(document.createElement("div"), { id: "place" }));';
      const page = await disturbed(data, `${place} place.append(chart);`);
      await page.waitForTimeout(kind === 'bars' ? 500 : 1500);
      await assertClean(page, []);
      await page.evaluate((data) => show(data), data);
      assert.equal(await page.evaluate('picture()'), await undisturbed(data));
      await assertClean(page, [displayed]);
      await page.mouse.move(100, 250);
      await page.evaluate('document.body.append(chart), frames(3)');
      await page.evaluate((data) => (chart.SetPlotData(data), shown(2)), data);
      await page.mouse.move(790, 590);
      assert.equal(await page.evaluate('picture()'), await undisturbed(data));
      await assertClean(page, [displayed, displayed]);

      const kept = await disturbed(data, `${place} place.style.cssText = 'overflow: auto; margin-left: 50px'; place.moveBefore(chart, null);`);
      await kept.evaluate('shown()');
      await kept.mouse.move(146, 250);
      assert.notEqual(await kept.evaluate('picture()'), await undisturbed(data), 'its bubble');
      await kept.evaluate('document.body.moveBefore(chart, null), frames(3)');
      await kept.mouse.move(790, 590);
      assert.equal(await kept.evaluate('picture()'), await undisturbed(data));
      await assertClean(kept, [displayed]);
    });

    await context.test(`being hidden and shown again, with ${kind}`, async () => {
      for (const [hide, show] of [['display = "none"', 'display = "block"'], ['visibility = "hidden"', 'visibility = ""']]) {
        const page = await disturbed(data, `chart.style.${hide};`);
        await page.evaluate('frames(4)');
        await page.evaluate(`chart.style.${show}, shown()`);
        assert.equal(await page.evaluate('picture()'), await undisturbed(data), hide);
        await assertClean(page, [displayed]);
        // Once shown and hovered, too.
        await page.mouse.move(96, 250);
        const hovered = await page.evaluate('picture()');
        assert.notEqual(hovered, await undisturbed(data));
        await page.evaluate(`chart.style.${hide}, frames(4)`);
        await page.mouse.move(790, 590);
        await page.evaluate(`chart.style.${show}, frames(4)`);
        assert.equal(await page.evaluate('picture()'), await undisturbed(data), hide);
        await assertClean(page, [displayed]);
      }
    });

    await context.test(`a stay in the back-forward cache, with ${kind}`, async () => {
      // Not before the page has answered: leaving would cut the answer off.
      const page = await disturbed(data, `${watchReturn} setTimeout(() => { location = '${away}'; });`);
      await comeBack(page);
      await page.evaluate('shown()');
      assert.equal(await page.evaluate('picture()'), await undisturbed(data));
      await assertClean(page, [displayed]);

      await page.mouse.move(96, 250);
      assert.notEqual(await page.evaluate('picture()'), await undisturbed(data));
      await leaveAndReturn(page);
      assert.equal(await page.evaluate('picture()'), await undisturbed(data), 'no bubble is left');
      await page.mouse.move(96, 250);
      assert.notEqual(await page.evaluate('picture()'), await undisturbed(data), 'the pointer finds the chart');
      await page.mouse.move(790, 590);
      await page.evaluate('chart.style.width = "640px", frames(4)');
      assert.equal(await page.evaluate('picture()'), await undisturbed(data, 640));
      await assertClean(page, [displayed]);
    });
  }

  await context.test('data that come while its element is hidden: the last ones are shown', async () => {
    const page = await browser.open(chart, script);
    await page.evaluate('frames(2).then(() => { chart.style.display = "none"; return frames(3); })');
    await page.evaluate(([data, others]) => {
      chart.SetPlotData(others);
      chart.SetPlotData(data);
      chart.SetPlotData([{ humanX: 'Bad', humanY: 'Bad', y: 'none' }]);
      return frames(3);
    }, [months(12), months(30)]);
    assert.deepEqual(await page.evaluate('calls'), []);
    assert.match(page.lines.splice(0).join('\n'), /didScanYValue$/, 'the bad ones are logged');
    await page.evaluate('chart.style.display = "block", shown()');
    assert.equal(await page.evaluate('picture()'), await undisturbed(months(12)));
    await assertClean(page, [displayed]);
  });

  await context.test('other data in the middle of the opening of a pie: they are shown at its end', async () => {
    const others = [{ key: 'Rent', value: 10 }, { key: 'Travel', value: 30 }];
    const pie = '<zelkon-plot id="pie" plot="pie"></zelkon-plot>';
    const page = await browser.open(pie, handDriven + script);
    await page.evaluate((others) => (pie.SetPlotData(three), tick(0), tick(100), pie.SetPlotData(others), tick(50)), others);
    assert.deepEqual(await page.evaluate('calls'), []);
    await page.evaluate('tick(101), tick(16), tick(16), release()');
    const fresh = await browser.open(pie, handDriven + script);
    await fresh.evaluate((others) => (pie.SetPlotData(others), tick(0), tick(100), tick(50), tick(101), tick(16), tick(16), release()), others);
    assert.equal(await page.evaluate('picture(pie)'), await fresh.evaluate('picture(pie)'));
    await assertClean(page, [pieDisplayed]);
  });

  await context.test('a stay in the back-forward cache, with a pie', async () => {
    const page = await browser.open('<zelkon-plot id="pie" plot="pie"></zelkon-plot>', script);
    await page.evaluate('start()');
    // A rim that is drawn from a kept picture is softer by a little than one drawn anew.
    await page.mouse.move(120, 60);
    await page.evaluate('picture(pie)');
    await page.mouse.move(790, 590);
    const rest = await page.evaluate('picture(pie)');
    await page.evaluate('calls.length = 0');
    await page.mouse.move(120, 60);
    assert.notEqual(await page.evaluate('picture(pie)'), rest);
    await leaveAndReturn(page);
    assert.equal(await page.evaluate('picture(pie)'), rest);
    const hover = 'SpendingTrendsSliceHoverIndex';
    await assertClean(page, [[hover, 0, 2 ** 63], [hover, -1, -1]]);
  });
});
