// Checks how pages read with scripts off.

'use strict';

const assert = require('assert');
const { KINDS, message, chatPage } = require('./conversation');
const { pageOf, tableRow } = require('./rows');
const { check } = require('./stage');

/// The width in pixels of each occurrence of the markup of rows in the raw text of a page.
const widthsOf = (tab, markup) => tab.evaluate(`(() => {
  const text = document.getElementById('source');
  const widths = [];
  for (const node of text.childNodes) {
    for (const { 0: { length }, index } of node.data.matchAll(${markup})) {
      const range = document.createRange();
      range.setStart(node, index);
      range.setEnd(node, index + length);
      widths.push([Math.max(0, ...Array.from(range.getClientRects(), (box) => box.width)), node.data.slice(Math.max(index - 12, 0), index + length)]);
    }
  }
  return widths;
})()`);

async function checkWidths(tab, markup, count, least, most) {
  const widths = await widthsOf(tab, markup);
  assert.strictEqual(widths.length, count, `${markup} occurs`);
  for (const [width, context] of widths) assert.ok(width >= least && width <= most, `${markup} is ${width} wide in "${context}"`);
}

const TEXTS = ['Hi', 'مرحبا، هل نلتقي غدا؟', 'שלום', 'Привет', 'a\nשלום', '١٢٣', '日本語', '👍', 'a 25', 'x'.repeat(300), ''];

async function checkLines(stage) {
  for (const width of [390, 1200]) {
    await check(`With scripts off, the markup between messages doesn't show at a width of ${width}`, async () => {
      const messages = TEXTS.map((text, at) => message(KINDS[at % 4], text, at));
      await stage.showFenced(chatPage(messages), async (tab) => {
        await tab.evaluate('document.fonts.ready.then(() => 0)');
        await checkWidths(tab, '/<\\/div>/g', 2 * messages.length, 0, 0.5);
        await checkWidths(tab, '/<div class="date">/g', messages.length, 5, 20);
        await checkWidths(tab, '/<div class="(?:send|recv)_msg">/g', 6, 5, 30);
        await checkWidths(tab, '/<div class="del_(?:send|recv)_msg">/g', 5, 60, 130);  // "[deleted]"
        await checkWidths(tab, '/<\\/?(?:header|h1|main|p)>/g', 8, 0, 0.5);
        await checkWidths(tab, '/<!--end-of-content-->/g', 1, 0, 0.5);
      }, { scripts: false, width });
    });
  }
  await check("With scripts off, the markup of rows is separators", async () => {
    const rows = TEXTS.map((text) => tableRow([text, '+49 1<br />+49 2', '', text, '', '', 'Company']));
    await stage.showFenced(pageOf('contacts.html', { title: 'Contacts' }, rows), async (tab) => {
      await tab.evaluate('document.fonts.ready.then(() => 0)');
      await checkWidths(tab, '/<\\/td>/g', 7 * rows.length, 0, 0.5);
      await checkWidths(tab, '/(?<!<tr>)<td>/g', 6 * rows.length, 5, 25);
      await checkWidths(tab, '/<br \\/>/g', rows.length, 5, 15);
      await checkWidths(tab, '/<\\/?(?:table|thead|tbody)>|<\\/tr>/g', 7 + rows.length, 0, 0.5);
    }, { scripts: false, width: 1200 });
  });
  await check('With scripts off, only the markup is hidden', async () => {
    const texts = ['</3 and <3', 'a < b > c', 'if (a</b) <p', '<b>bold</b>', 'class="x"'];
    await stage.showFenced(chatPage(texts.map((text) => message('recv_msg', text))), async (tab) => {
      await tab.evaluate('document.fonts.ready.then(() => 0)');
      await checkWidths(tab, '/<\\/3/g', 1, 15, 40);
      await checkWidths(tab, '/<b>bold<\\/b>/g', 1, 60, 150);
      await checkWidths(tab, '/a < b > c/g', 1, 50, 100);
    }, { scripts: false });
  });
}

module.exports = { checkLines };
