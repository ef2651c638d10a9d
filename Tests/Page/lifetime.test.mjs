import assert from 'node:assert/strict';
import { test } from 'node:test';
import { metricsOf, openBrowser } from './browser.mjs';

const keptBy = async (page) => ({ ...(await metricsOf(page)), memory: await page.evaluate('memory.buffer.byteLength') });

test('elements that come and go', async (context) => {
  const browser = await openBrowser(context);
  const grabMemory = `
    let memory;
    const instantiate = WebAssembly.instantiate;
    WebAssembly.instantiate = async (...all) => {
      const made = await instantiate(...all);
      memory = Object.values(made.exports).find((each) => each instanceof WebAssembly.Memory);
      return made;
    };`;

  await context.test('leave no listener, no canvas and no memory behind', async () => {
    const page = await browser.open('<div id="place"></div>', grabMemory);
    const comeAndGo = (count) =>
      page.evaluate(async (count) => {
        for (let i = 0; i < count; ++i) {
          const element = document.createElement('zelkon-plot');
          element.setAttribute('plot', i % 2 ? 'pie' : 'spendingOverTimeBarOrLine');
          place.append(element);
          element.SetPlotData(i % 2 ? three : [{ humanX: 'May', humanY: '$1', y: '1' }, { humanX: 'June', humanY: '$2', y: '2' }]);
          if (i % 10 === 0) await frames(1);
          element.remove();
        }
        await frames(2);
      }, count);
    await comeAndGo(100);
    const before = await keptBy(page);
    await comeAndGo(1000);
    const after = await keptBy(page);
    assert.equal(after.memory, before.memory);
    assert.ok(after.listeners <= before.listeners, `${before.listeners} listeners became ${after.listeners}`);
    assert.ok(after.nodes <= before.nodes + 20, `${before.nodes} nodes became ${after.nodes}`);
    assert.deepEqual(await page.evaluate('errors'), []);
  });

  await context.test('do not grow with new data, highlights and sizes', async () => {
    const page = await browser.open('<zelkon-plot id="pie" plot="pie"></zelkon-plot>', grabMemory);
    await page.evaluate('start()');
    const use = (count) =>
      page.evaluate(async (count) => {
        for (let i = 0; i < count; ++i) {
          pie.SetPlotData(three.map(({ key, value }) => ({ key: `${key} ${i}`, value: value + i })));
          pie.HoverEntryAtIndex(true, i % 3);
          if (i % 50 === 0) {
            pie.style.width = `${300 + (i % 7)}px`;
            await frames(2);
          }
        }
      }, count);
    await use(300);
    const before = await keptBy(page);
    await use(2000);
    const after = await keptBy(page);
    assert.equal(after.memory, before.memory);
    assert.ok(after.nodes <= before.nodes + 20, `${before.nodes} nodes became ${after.nodes}`);
  });
});
