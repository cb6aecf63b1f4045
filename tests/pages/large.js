// Checks pages of the largest size that a backup can cause.

'use strict';

const assert = require('assert');
const { check } = require('./stage');
const { messageRow, tableRow, pageOf } = require('./rows');

const MANY = 200000;
const FEW = 20000;

// Table cells and rows are laid out even outside the viewport, and 200,000 of them take a browser half a minute.
// The script's work on them needs no layout.
const WITHOUT_LAYOUT =
  `addEventListener('DOMContentLoaded', () => { document.documentElement.style.display = 'none'; }, { capture: true })`;

const numberOf = (at) => '+49 30 ' + String(at).padStart(6, '0');
const callsOf = (count) => pageOf('CallHistory.html', { title: 'Calls' }, Array.from({ length: count }, (_, at) => tableRow(
  ['Name ' + at % 1000, numberOf(at), '2016-05-01 10:00:00', at % 2 ? 'Incoming' : 'Outgoing', '0'])));
const chatOf = (count) => pageOf('Sms.html', { title: 'Chat', person: 'Name: Ann, Phone: 1' },
  Array.from({ length: count }, (_, at) => messageRow(
    { kind: at % 2 ? 'recv_msg' : 'send_msg', date: '2016-05-01 10:00:00', party: 'Ann', text: 'Message ' + at })));

async function checkLargeTable(stage) {
  await check(`A table of ${MANY} rows shows all of them, filters and sorts`, async () => {
    await stage.show(callsOf(MANY), async (tab) => {
      const ends = () => tab.evaluate(`(() => {
        const rows = document.querySelector('tbody').rows;
        const shown = Array.from(rows).filter((row) => !row.hidden).length;
        return [rows.length, shown, rows[0].cells[1].textContent, rows[rows.length - 1].cells[1].textContent];
      })()`);
      const sort = () => tab.evaluate(`document.querySelector('th:nth-child(2) button').click()`);
      const filter = (words) => tab.evaluate(`(() => {
        const box = document.querySelector('input');
        box.value = ${JSON.stringify(words)};
        box.dispatchEvent(new Event('input'));
        return document.querySelector('output').textContent;
      })()`);

      const [first, last] = [numberOf(0), numberOf(MANY - 1)];
      assert.deepStrictEqual(await ends(), [MANY, MANY, first, last]);
      await sort();
      await sort();
      assert.deepStrictEqual(await ends(), [MANY, MANY, last, first]);
      await sort();
      assert.deepStrictEqual(await ends(), [MANY, MANY, first, last]);
      assert.strictEqual(await filter('incoming 199999'), `1 of ${MANY} rows`);
      assert.strictEqual((await ends())[1], 1);
      assert.strictEqual(await filter(''), `${MANY} rows`);
      assert.deepStrictEqual(await ends(), [MANY, MANY, first, last]);
      assert.deepStrictEqual(tab.messages, [], 'messages of the console');
    }, { atStart: WITHOUT_LAYOUT });
  });
}

/// The cost of showing a conversation. Seconds are CPU time of the page's thread, which depends little on the load
/// of the machine.
async function costOf(stage, count) {
  let cost;
  await stage.show(chatOf(count), async (tab) => {
    const { metrics } = await tab.send('Performance.getMetrics');
    cost = Object.fromEntries(metrics.map(({ name, value }) => [name, value]));
    assert.strictEqual(await tab.evaluate(`document.querySelectorAll('.recv_msg, .send_msg').length`), count);
    assert.strictEqual(await tab.evaluate(`document.querySelector('main').lastChild.lastChild.textContent`),
                       'Message ' + (count - 1));
    cost.awake = await tab.evaluate(`Array.from(document.querySelectorAll('.date')).filter(
      (line) => line.checkVisibility({ contentVisibilityAuto: true })).length`);
    assert.deepStrictEqual(tab.messages, [], 'messages of the console');
  }, { threadTimes: true });
  return cost;
}

async function checkLargeConversation(stage) {
  await check(`A conversation of ${MANY} messages costs in proportion to one of ${FEW}, and most of it sleeps`, async () => {
    const [few, many] = [await costOf(stage, FEW), await costOf(stage, MANY)];

    // Ten times the messages take ten times the work; a quadratic step would take a hundred times.
    const growth = many.ScriptDuration / few.ScriptDuration;
    assert.ok(growth > 3 && growth < 40, `the script ran ${growth.toFixed(1)} times as long`);
    for (const { awake, LayoutCount: layouts } of [few, many]) {
      assert.ok(awake > 5 && awake < 1000, `${awake} messages are laid out at once`);
      assert.ok(layouts < 20, `the page was laid out ${layouts} times`);
    }
    console.log(`        ${growth.toFixed(1)} times as long, ${many.ScriptDuration.toFixed(1)} s`);
  });
}

module.exports = { checkLargeTable, checkLargeConversation };
