// Checks pages of the largest size that a backup can cause.

'use strict';

const assert = require('assert');
const { check } = require('./stage');
const { messageRow, pageOf } = require('./rows');

const MANY = 200000;
const FEW = 20000;

const chatOf = (count) => pageOf('Sms.html', { title: 'Chat', person: 'Name: Ann, Phone: 1' },
  Array.from({ length: count }, (_, at) => messageRow(
    { kind: at % 2 ? 'recv_msg' : 'send_msg', date: '2016-05-01 10:00:00', party: 'Ann', text: 'Message ' + at })));

/// The cost of showing a conversation. Seconds are CPU time of the page's thread, which depends little on the load
/// of the machine.
async function costOf(stage, count) {
  let cost;
  await stage.show(chatOf(count), async (tab) => {
    const { metrics } = await tab.send('Performance.getMetrics');
    cost = Object.fromEntries(metrics.map(({ name, value }) => [name, value]));
    cost.built = await tab.evaluate(`document.querySelectorAll('.message').length`);
    await tab.evaluate(`scrollTo(0, document.documentElement.scrollHeight)`);
    await tab.idle();
    await tab.idle();
    assert.strictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('.text')).pop().textContent`),
                       'Message ' + (count - 1));
    assert.deepStrictEqual(tab.messages, [], 'messages of the console');
  }, { threadTimes: true, atStart: 'localStorage.clear()' });  // without the order of an earlier visit
  return cost;
}

async function checkLargeConversation(stage) {
  await check(`A conversation of ${MANY} messages costs in proportion to one of ${FEW}, and few of them are built`, async () => {
    const [few, many] = [await costOf(stage, FEW), await costOf(stage, MANY)];

    // Ten times the messages take ten times the work at most; a quadratic step would take a hundred times.
    const growth = many.ScriptDuration / few.ScriptDuration;
    assert.ok(growth < 40, `the script ran ${growth.toFixed(1)} times as long`);
    for (const { built, LayoutCount: layouts } of [few, many]) {
      assert.ok(built > 5 && built < 500, `${built} messages are built at once`);
      assert.ok(layouts < 20, `the page was laid out ${layouts} times`);
    }
    console.log(`        ${growth.toFixed(1)} times as long, ${many.ScriptDuration.toFixed(1)} s`);
  });
}

module.exports = { checkLargeConversation };
