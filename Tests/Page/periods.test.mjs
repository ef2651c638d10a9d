// Amounts over time without a mouse: by keyboard, by touch, and by a screen reader.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { openBrowser } from './browser.mjs';
import { chart, months, script } from './overtime.mjs';

test('amounts over time without a mouse', async (context) => {
  const browser = await openBrowser(context);
  const begin = async (data, options = {}, body = chart) => {
    const page = await browser.open(body, script, options);
    await page.evaluate((data) => show(data), data);
    return page;
  };
  const press = async (page, ...keys) => {
    for (const key of keys) await page.keyboard.press(key);
  };

  for (const [kind, count] of [['bars', 12], ['a line', 36]]) {
    await context.test(`the keyboard walks along ${kind} as a pointer would`, async () => {
      const data = months(count);
      const page = await begin(data, { reducedMotion: 'reduce' });
      const rest = await page.evaluate('picture()');
      await press(page, 'Tab');
      const walk = [['ArrowRight', 0], ['ArrowDown', 1], ['ArrowLeft', 0], ['ArrowUp', count - 1], ['Home', 0], ['End', count - 1]];
      const pictures = new Map();
      for (const [key, index] of walk) {
        await press(page, key);
        assert.equal(await page.evaluate('heard()'), `${data[index].humanX}, ${data[index].humanY}`, key);
        const picture = await page.evaluate('picture()');
        assert.equal(pictures.get(index) ?? picture, picture, key);
        pictures.set(index, picture);
      }
      await press(page, 'Escape');
      assert.equal(await page.evaluate('heard()'), '');
      assert.equal(await page.evaluate('picture()'), rest);
      assert.equal(new Set([rest, ...pictures.values()]).size, 4, 'a bubble for each entry');
      // The pointer finds the same bubbles, near the left edge and near the right one.
      for (const [x, index] of kind === 'bars' ? [[96, 0], [635, 11]] : [[62, 0], [659, 35]]) {
        await page.mouse.move(x, 250);
        assert.equal(await page.evaluate('picture()'), pictures.get(index), String(index));
        await page.mouse.move(780, 580);
      }
      assert.equal(await page.evaluate('picture()'), rest);
      assert.deepEqual(await page.evaluate('calls'), [['GraphHasDisplayed']]);
      assert.deepEqual(page.lines, []);
    });
  }

  await context.test('the keyboard also says what is too small for a bar, and shows no bubble there', async () => {
    const page = await begin(months(4, (index) => (index === 1 ? 0 : 100)), { reducedMotion: 'reduce' });
    const rest = await page.evaluate('picture()');
    await press(page, 'Tab', 'ArrowRight', 'ArrowRight');
    assert.equal(await page.evaluate('heard()'), 'February 2009, $0.00');
    assert.equal(await page.evaluate('picture()'), rest);
    await press(page, 'Enter', 'ArrowRight');
    assert.equal(await page.evaluate('heard()'), 'March 2009, $100.00');
    await press(page, 'ArrowLeft', 'Tab');
    assert.equal(await page.evaluate('heard()'), '');
    assert.deepEqual(page.lines, []);
  });

  await context.test('a tap leaves a bubble, and a finger drags it along the line', async () => {
    const page = await begin(months(36), { hasTouch: true, isMobile: true, reducedMotion: 'reduce' });
    // The page could be scrolled both ways.
    await page.evaluate(() => { document.body.style.cssText = 'width: 2000px; height: 2000px'; });
    const rest = await page.evaluate('picture()');
    await page.touchscreen.tap(300, 230);
    const tapped = await page.evaluate('picture()');
    assert.notEqual(tapped, rest);
    const client = await page.context().newCDPSession(page);
    const touch = (type, x, y) => client.send('Input.dispatchTouchEvent', { type, touchPoints: x === undefined ? [] : [{ x, y }] });
    await touch('touchStart', 100, 230);
    const dragged = [];
    for (let x = 120; x <= 500; x += 20) {
      await touch('touchMove', x, 230);
      if (x % 100 === 0) dragged.push(await page.evaluate('picture()'));
    }
    assert.equal(new Set([rest, ...dragged]).size, 1 + 4);
    assert.equal(dragged[1], tapped, 'at 300 as the tap');
    await touch('touchEnd');
    assert.equal(await page.evaluate('picture()'), dragged[3], 'the last bubble stays');
    assert.deepEqual(await page.evaluate('[scrollX, scrollY]'), [0, 0]);
    await page.touchscreen.tap(300, 500);
    assert.equal(await page.evaluate('picture()'), rest);
    // Up and down the finger still moves the page.
    await touch('touchStart', 300, 230);
    for (let y = 210; y >= 30; y -= 20) await touch('touchMove', 300, y);
    await touch('touchEnd');
    await page.waitForFunction('scrollY > 50');
    assert.equal(await page.evaluate('picture()'), rest);
    assert.deepEqual(page.lines, []);
  });

  const tableOf = async (page) => {
    await page.waitForFunction(() => chart.shadowRoot.querySelector('tbody tr'));
    const client = await page.context().newCDPSession(page);
    const { nodes } = await client.send('Accessibility.getFullAXTree');
    const heard = nodes.filter(({ ignored }) => !ignored);
    const named = (role) => heard.filter((node) => node.role.value === role).map(({ name }) => name?.value);
    return { named, tables: named('table'), periods: named('rowheader'), amounts: named('cell'), columns: named('columnheader') };
  };

  for (const [kind, count] of [['bars', 12], ['a line', 60]]) {
    await context.test(`a screen reader finds the periods and amounts of ${kind} in a table`, async () => {
      const data = months(count);
      const page = await begin(data);
      const { named, tables, columns, periods, amounts } = await tableOf(page);
      assert.deepEqual(named('application'), ['Spending']);
      assert.deepEqual(tables, ['Spending']);
      assert.deepEqual(columns, ['Period', 'Amount']);
      assert.deepEqual(periods, data.map(({ humanX }) => humanX));
      assert.deepEqual(amounts, data.map(({ humanY }) => humanY));
      assert.deepEqual(named('button'), []);
      await page.addScriptTag({ url: `${browser.origin}/axe.min.js` });
      const violations = await page.evaluate(async () => (await axe.run(chart)).violations.map(({ id, nodes }) => [id, nodes.map(({ html }) => html)]));
      assert.deepEqual(violations, []);
    });
  }

  await context.test('the table follows the size, the name and new data as the chart does', async () => {
    const page = await begin(months(12));
    await page.evaluate((data) => chart.SetPlotData(data), months(3));
    await page.evaluate('chart.style.width = "400px", chart.setAttribute("aria-label", "Saved"), frames(3)');
    await page.waitForTimeout(100);
    const { tables, periods } = await tableOf(page);
    assert.deepEqual(tables, ['Saved']);
    assert.equal(periods.length, 12, 'a chart once shown keeps its data');
    await page.evaluate('chart.setAttribute("plot", "spendingOverTimeBarOrLine"), frames(3)');
    assert.equal(await page.evaluate(() => chart.shadowRoot.querySelector('table')), null);
    await page.evaluate((data) => chart.SetPlotData(data), months(3));
    assert.equal((await tableOf(page)).periods.length, 3);
    await page.evaluate('chart.setAttribute("plot", "pie"), frames(3)');
    assert.equal(await page.evaluate(() => chart.shadowRoot.querySelector('table')), null);
  });

  for (const count of [1500, 1_000_000]) {
    await context.test(`all of ${count} entries can be come to, a hundred at a time`, async () => {
      const page = await browser.open(chart, script, { reducedMotion: 'reduce' });
      await page.evaluate((count) => {
        window.watched = [];
        new MutationObserver((records) => watched.push(records.reduce((sum, { addedNodes }) => sum + addedNodes.length, 0))).observe(chart.shadowRoot, { childList: true, subtree: true });
        return show(Array.from({ length: count }, (_, index) => ({ humanX: `Payment ${index + 1}`, humanY: `$${index}`, y: `${index}` })));
      }, count);
      const shows = async (first, rows = 100) => {
        const { named, tables, periods, amounts } = await tableOf(page);
        const text = (value) => value.toLocaleString('en');
        assert.deepEqual(tables, [`Spending, ${text(first)} to ${text(first + rows - 1)} of ${text(count)}`]);
        assert.deepEqual(periods, Array.from({ length: rows }, (_, index) => `Payment ${first + index}`));
        assert.deepEqual(amounts, Array.from({ length: rows }, (_, index) => `$${first + index - 1}`));
        assert.deepEqual(named('button'), ['Previous entries', 'Next entries']);
        assert.deepEqual(named('spinbutton'), ['Go to entry']);
      };
      await shows(1);
      const rowIndexes = await page.evaluate(() => [...chart.shadowRoot.querySelectorAll('[aria-rowcount], [aria-rowindex]')].slice(0, 3).map((row) => [row.ariaRowCount, row.ariaRowIndex]));
      assert.deepEqual(rowIndexes, [[String(count + 1), null], [null, '1'], [null, '2']]);
      // As a screen reader acts on them: with a click and with a value.
      const act = (name) => page.evaluate((name) => [...chart.shadowRoot.querySelectorAll('button')].find(({ textContent }) => textContent === name).click(), name);
      const goTo = (entry) =>
        page.evaluate((entry) => {
          const field = chart.shadowRoot.querySelector('input');
          field.value = entry;
          field.dispatchEvent(new Event('change'));
        }, entry);
      await act('Next entries');
      await shows(101);
      await act('Previous entries');
      await shows(1);
      await goTo(count / 2);
      await shows(count / 2);
      await goTo(10 * count);
      await shows(count, 1);
      await goTo('');
      await shows(count, 1);
      await goTo(-5);
      await shows(1);
      assert.ok((await page.evaluate('Math.max(...watched)')) <= 110, 'never many rows at once');
      await page.keyboard.press('Tab');
      await page.keyboard.press('Tab');
      assert.equal(await page.evaluate(() => document.activeElement === chart), false, 'the keyboard passes the table by');
      await page.addScriptTag({ url: `${browser.origin}/axe.min.js` });
      assert.deepEqual(await page.evaluate(async () => (await axe.run(chart)).violations.map(({ id }) => id)), []);
      assert.deepEqual(page.lines, []);
    });
  }

  await context.test('nothing of it is there for a page that sees to that itself', async () => {
    const page = await begin(months(12), {}, chart.replace('>', ' no-keyboard>'));
    await page.waitForTimeout(200);
    assert.equal(await page.evaluate(() => chart.shadowRoot.querySelector('table')), null);
    const rest = await page.evaluate('picture()');
    await press(page, 'Tab', 'ArrowRight');
    assert.equal(await page.evaluate('heard()'), '');
    assert.equal(await page.evaluate('picture()'), rest);
    await page.evaluate('chart.removeAttribute("no-keyboard")');
    assert.equal((await tableOf(page)).periods.length, 12);
    await page.evaluate('chart.setAttribute("no-keyboard", "")');
    assert.equal(await page.evaluate(() => chart.shadowRoot.querySelector('table')), null);
  });

  await context.test('what only screen readers see takes no room in the page', async () => {
    const page = await begin(months(60));
    await page.evaluate('chart.style.width = "100%", chart.style.height = "100vh"');
    await tableOf(page);
    assert.deepEqual(await page.evaluate(() => [document.documentElement.scrollWidth, document.documentElement.scrollHeight]), [800, 600]);
  });
});
