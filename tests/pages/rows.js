// Creates pages as the recovery does: unescaped rows inserted into the templates.

'use strict';

const assert = require('assert');
const fs = require('fs');
const path = require('path');

const TEMPLATES = process.env.TEMPLATES;  // the folder that the build has put the pages into
const CONTENT = '{|content|}';
const FENCE = '<plaintext id="source"';  // behind it all is text

/// The row of a message. @param kind "recv_msg", "del_recv_msg", "send_msg" or "del_send_msg".
function messageRow({ kind, date, party, text }) {
  return `<div class="date">Date: ${date} ${party}:</div>\r\n<div class="${kind}">${text}</div>\r\n`;
}

function tableRow(cells) {
  return '\t<tr>' + cells.map((cell) => `<td>${cell}</td>`).join('') + '</tr>\r\n';
}

/// A page of rows. @param change modifies the template first, to test the checks.
function pageOf(template, { title, person = '' }, rows, change = (text) => text) {
  const text = change(fs.readFileSync(path.join(TEMPLATES, template), 'utf8'));
  const at = text.indexOf(CONTENT);
  const head = text.slice(0, at).split('{|title|}').join(title).split('{|person|}').join(person);
  return head + rows.join('') + text.slice(at + CONTENT.length);
}

/// As a browser reads it: line ends are one character.
const asParsed = (text) => text.replaceAll('\r\n', '\n');

/// Fails unless the page of a tab shows all these texts.
async function assertReadable(tab, texts) {
  const shown = await tab.evaluate('document.body.innerText');
  for (const text of texts) assert.ok(shown.includes(asParsed(text)), `not to be read: ${text}`);
}

module.exports = { TEMPLATES, CONTENT, FENCE, asParsed, assertReadable, messageRow, tableRow, pageOf };
