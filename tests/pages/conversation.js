// Pages of conversations, and what they show.

'use strict';

const assert = require('assert');
const { asParsed, messageRow, pageOf } = require('./rows');

const KINDS = ['recv_msg', 'del_recv_msg', 'send_msg', 'del_send_msg'];
const TITLE = "iPhone's Things of Lena's <b>iPhone</b>";
const WHO = 'Ann <i>Berger</i>';
const PERSON = `Name: ${WHO}, Phone: +49 30 123`;

/// A message of Ann or of the owner. @param number the later the smaller, as in pages.
const message = (kind, text, number = 0) => ({
  kind, text, party: kind.includes('send') ? 'Me' : 'Ann',
  date: new Date(Date.UTC(2016, 4, 1, 9, 12, 33) - number * 1000).toISOString().slice(0, 19).replace('T', ' '),
});

const chatPage = (messages, template = 'Sms.html', change = undefined) =>
  pageOf(template, { title: TITLE, person: PERSON }, messages.map(messageRow), change);

/// All messages that the page shows, with the sides of their boxes. Scrolls through the page, since only those near the
/// viewport exist.
const readBubbles = (tab) => tab.evaluate(`(async () => {
  const found = [];
  const frame = document.querySelector('main').getBoundingClientRect();
  for (const stretch of document.querySelectorAll('.stretch')) {
    stretch.scrollIntoView();
    while (!stretch.children.length) await new Promise((resolve) => setTimeout(resolve));
    for (const message of stretch.querySelectorAll('.message')) {
      const bubble = message.querySelector('[class$="_msg"]');
      const box = bubble.getBoundingClientRect();
      const texts = Array.from(bubble.querySelector('.text').childNodes, (node) =>
        node.className === 'attachment' ? '\\ufffc' : node.textContent);
      found.push({ kind: bubble.className, text: texts.join(''), party: message.querySelector('bdi').textContent,
                   date: message.querySelector('time')?.dateTime.replace('T', ' ').replace('Z', '') || '',
                   left: box.left - frame.left, right: frame.right - box.right, width: box.width, height: box.height });
    }
  }
  return found;
})()`);

function assertBubbles(found, messages) {
  assert.deepStrictEqual(
    found.map(({ kind, text, party, date }) => ({ kind, text, party, date })),
    messages.map(({ kind, text, party, date }) => ({ kind, text: asParsed(text), party, date })));
  for (const { kind, left, right, width, height } of found) {
    assert.ok(width > 20 && height > 20, `a ${kind} has a box of ${width} x ${height}`);
    if (kind.includes('send')) assert.ok(right < 2 && left > 50, `a ${kind} is ${left} from the left, ${right} from the right`);
    else assert.ok(left < 2 && right > 50, `a ${kind} is ${left} from the left, ${right} from the right`);
  }
}

module.exports = { KINDS, TITLE, WHO, PERSON, message, chatPage, readBubbles, assertBubbles, asParsed };
