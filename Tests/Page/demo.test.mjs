import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import { join } from 'node:path';
import { test } from 'node:test';
import { openBrowser, pictures } from './browser.mjs';

test('the demonstration page', async (context) => {
  const browser = await openBrowser(context);
  const open = async (options) => {
    const page = await browser.openPath('', options);
    await page.getByText('SpendingTrendsHaveDisplayed()').waitFor();
    await page.getByText('GraphHasDisplayed()').waitFor();
    return page;
  };
  // A digest of the picture of the amounts over time, once the page has heard that they are on show `calls` times since then.
  const openOverTime = async () => {
    const page = await open({ reducedMotion: 'reduce', viewport: { width: 1100, height: 800 } });
    await page.evaluate(() => {
      const note = window.GraphHasDisplayed;
      window.shown = 0;
      window.GraphHasDisplayed = () => {
        note();
        window.shown++;
      };
    });
    page.picture = async (calls) => {
      await page.waitForFunction((calls) => window.shown >= calls, calls, { timeout: 120_000 });
      const picture = await page.evaluate(async () => {
        for (let frame = 0; frame < 4; ++frame) await new Promise(requestAnimationFrame);
        return document.getElementById('overtime').shadowRoot.querySelector('canvas').toDataURL();
      });
      return createHash('sha256').update(picture).digest('hex');
    };
    return page;
  };

  await context.test('has nothing that axe objects to', async () => {
    const page = await open();
    await page.addScriptTag({ url: `${browser.origin}/axe.min.js` });
    const violations = await page.evaluate(async () => (await axe.run(document)).violations.map(({ id, nodes }) => [id, nodes.map(({ html }) => html)]));
    assert.deepEqual(violations, []);
  });

  await context.test('colours its legend like the slices and highlights both from either side', async () => {
    const page = await open();
    const rows = page.locator('#legend tr');
    assert.equal(await rows.count(), 7);
    assert.equal(await rows.first().locator('.swatch').evaluate((swatch) => getComputedStyle(swatch).backgroundColor), 'rgb(52, 59, 209)');
    await rows.nth(1).hover();
    assert.match(await rows.nth(1).getAttribute('class'), /hovered/);
    await page.waitForTimeout(400);
    await page.screenshot({ path: join(pictures, 'demo.png'), fullPage: true });
    const box = await page.locator('#pie').boundingBox();
    await page.mouse.move(box.x + box.width / 2, box.y + box.height / 4);
    assert.match(await rows.first().getAttribute('class'), /hovered/);
    await page.mouse.down();
    assert.equal(await page.locator('#calls li').first().textContent().then((text) => text.slice(8)), 'SpendingTrendsSliceClicked(0)');
  });

  await context.test('replaces the data for another month', async () => {
    const page = await open();
    await page.locator('#month').selectOption('August 2026');
    assert.equal(await page.locator('#legend tr').count(), 8);
    assert.equal(await page.locator('#total').textContent(), '$3,441.47');
    await page.screenshot({ path: join(pictures, 'demo-august.png'), fullPage: true });
  });

  await context.test('shows the amounts over time afresh for every switch', async () => {
    const page = await openOverTime();
    const pictures = [await page.picture(0)];
    const change = async (act) => {
      await act();
      const picture = await page.picture(pictures.length);
      assert.equal(await page.evaluate('shown'), pictures.length);
      assert.ok(!pictures.includes(picture), `picture ${pictures.length} is like ${pictures.indexOf(picture)}`);
      pictures.push(picture);
    };
    const twice = async (label) => {
      const before = pictures.at(-1);
      await change(async () => page.getByLabel(label).setChecked(!(await page.getByLabel(label).isChecked())));
      pictures.push(before);
      await page.getByLabel(label).setChecked(!(await page.getByLabel(label).isChecked()));
      assert.equal(await page.picture(pictures.length - 1), before, label);
    };
    for (const label of ['Period labels', 'Amount labels', 'Full-width gridlines']) await twice(label);
    await change(() => page.locator('[name=measure]').selectOption('Saved'));
    await twice('All positive');
    await change(() => page.locator('[name=currency]').selectOption('JPY'));
    await change(() => page.locator('[name=currency]').selectOption('None'));
    for (const label of ['6 months', '2 years', '5 years', 'Daily']) await change(() => page.getByText(label).click());
    assert.match(await page.locator('#taken').textContent(), /^1,461 entries/);
    assert.deepEqual(page.lines.filter((line) => /Refused|uncaught|zelkon/.test(line)), []);
  });

  await context.test('loads a million entries', async () => {
    const page = await openOverTime();
    const before = await page.picture(0);
    // The click is sent by the page itself: a browser that is busy reading would not answer a real one in time.
    await page.evaluate(() => setTimeout(() => document.getElementById('many').click()));
    assert.notEqual(await page.picture(1), before);
    assert.match(await page.locator('#taken').textContent(), /^1,000,000 entries/);
    assert.equal(await page.locator('#span').textContent(), 'on average, Payment 1 to Payment 1000000');
    await page.screenshot({ path: join(pictures, 'demo-million.png'), fullPage: true });
  });

  await context.test('draws the charts for the width that the report is dragged to, silently', async () => {
    const page = await openOverTime();
    const widths = () => page.evaluate(() => ['pie', 'overtime'].map((id) => document.getElementById(id).clientWidth));
    const first = await page.picture(0);
    const [pie, overtime] = await widths();
    const grip = await page.locator('#grip').boundingBox();
    const [x, y] = [grip.x + grip.width / 2, 400];
    await page.mouse.move(x, y);
    await page.mouse.down();
    await page.mouse.move(x - 150, y, { steps: 10 });
    assert.deepEqual(await widths(), [pie - 75, overtime - 150]);
    assert.notEqual(await page.picture(0), first);
    await page.screenshot({ path: join(pictures, 'demo-dragged.png'), fullPage: true });
    await page.mouse.move(x, y, { steps: 10 });
    await page.mouse.up();
    assert.deepEqual(await widths(), [pie, overtime]);
    assert.equal(await page.picture(0), first);
    await page.locator('#grip').press('ArrowLeft');
    assert.deepEqual(await widths(), [pie - 10, overtime - 20]);
    assert.equal(await page.evaluate('shown'), 0);
  });
});
