import assert from 'node:assert/strict';
import { join } from 'node:path';
import { test } from 'node:test';
import { openBrowser, pictures } from './browser.mjs';

test('the demonstration page', async (context) => {
  const browser = await openBrowser(context);
  const open = async (options) => {
    const page = await browser.openPath('', options);
    await page.getByText('SpendingTrendsHaveDisplayed()').waitFor();
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
    await page.getByLabel('Month').selectOption('August 2026');
    assert.equal(await page.locator('#legend tr').count(), 8);
    assert.equal(await page.locator('#total').textContent(), '$3,441.47');
    await page.screenshot({ path: join(pictures, 'demo-august.png'), fullPage: true });
  });
});
