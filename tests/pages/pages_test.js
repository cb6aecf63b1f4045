// Checks the exported pages in a real browser. Run by tests/pages/run.

'use strict';

const assert = require('assert');
const { spawnSync } = require('child_process');
const { createHash } = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { checkLargeTable, checkLargeConversation } = require('./large');
const { HOST, Stage, check, failureCount } = require('./stage');
const { TEMPLATES, CONTENT, FENCE, messageRow, tableRow, pageOf } = require('./rows');

const SOURCES = path.join(__dirname, '..', '..', 'template');
const CHATS = ['Sms.html', 'WhatsApp.html'];
const TABLES = { 'CallHistory.html': 5, 'Notes.html': 3, 'contacts.html': 7 };
const PAGES = [...CHATS, ...Object.keys(TABLES)];
const KINDS = ['recv_msg', 'del_recv_msg', 'send_msg', 'del_send_msg'];
const TITLE = "iPhone's Things of Lena's <b>iPhone</b>";
const PERSON = 'Name: Ann <i>Berger</i>, Phone: +49 30 123';
const ALL_BUBBLES = KINDS.map((kind) => '.' + kind).join();

const message = (kind, text, number = 0) => ({
  kind, text, party: kind.includes('send') ? 'Me' : 'Ann', date: `2016-05-01 09:12:${String(number % 60).padStart(2, '0')}`,
});
const chatPage = (messages, template = 'Sms.html', change = undefined) =>
  pageOf(template, { title: TITLE, person: PERSON }, messages.map(messageRow), change);
const tablePage = (template, records) => pageOf(template, { title: TITLE }, records.map(tableRow));
const asParsed = (text) => text.replaceAll('\r\n', '\n');

/// The messages as shown by the page, with the sides of their boxes.
const readBubbles = (tab) => tab.evaluate(`Array.from(document.querySelectorAll(${JSON.stringify(ALL_BUBBLES)}), (bubble) => {
  const box = bubble.getBoundingClientRect();
  const frame = bubble.closest('main').getBoundingClientRect();
  return { kind: bubble.className, text: bubble.textContent, line: bubble.previousElementSibling.textContent,
           left: box.left - frame.left, right: frame.right - box.right, width: box.width, height: box.height };
})`);
const readCells = (tab) => tab.evaluate(
  `Array.from(document.querySelectorAll('tbody tr'), (row) => Array.from(row.cells, (cell) => cell.textContent))`);
const readShown = (tab) => tab.evaluate(
  `Array.from(document.querySelectorAll('tbody tr')).filter((row) => row.offsetHeight).map((row) => row.cells[0].textContent)`);

function assertBubbles(found, messages) {
  assert.deepStrictEqual(found.map(({ kind, text, line }) => ({ kind, text, line })), messages.map((one) => ({
    kind: one.kind, text: asParsed(one.text), line: `Date: ${one.date} ${one.party}:`,
  })));
  for (const { kind, left, right, width, height } of found) {
    assert.ok(width > 20 && height > 20, `a ${kind} has a box of ${width} x ${height}`);
    if (kind.includes('send')) assert.ok(right < 2 && left > 50, `a ${kind} is ${left} from the left, ${right} from the right`);
    else assert.ok(left < 2 && right > 50, `a ${kind} is ${left} from the left, ${right} from the right`);
  }
}

// Templates as files

async function checkTemplates() {
  const read = (page) => fs.readFileSync(path.join(TEMPLATES, page), 'utf8');
  for (const page of PAGES) {
    await check(`${page} is whole, guarded from its first line, and refers to nothing outside`, () => {
      const text = read(page);
      assert.strictEqual(text.split(CONTENT).length, 2, 'content tokens');
      const fence = text.indexOf(FENCE);
      assert.ok(fence > 0 && text.indexOf('{|') > fence, 'a token stands before the fence');
      assert.ok(text.indexOf('{|title|}') > fence && text.indexOf('{|title|}') < text.indexOf(CONTENT), 'title token');
      assert.strictEqual(text.includes('{|person|}'), CHATS.includes(page), 'person token');
      assert.match(text, /<head>\s*<meta http-equiv="Content-Security-Policy" content="default-src 'none'; script-src 'sha256-[^']+'; style-src 'sha256-[^']+'; base-uri 'none'; form-action 'none'">/);
      assert.ok(Buffer.from(text).indexOf('<meta charset="utf-8">') < 1000, 'the charset comes late');
      assert.doesNotMatch(text, /https?:|url\(|@import|\ssrc=|\shref=/);
    });
  }
  for (const [page, columns] of Object.entries(TABLES)) {
    await check(`${page} opens a table with ${columns} head cells and closes it`, () => {
      const [head, tail] = read(page).split(CONTENT);
      assert.strictEqual(head.slice(head.indexOf('<table>')).match(/<th[ >]/g).length, columns);
      assert.match(tail, /<\/tbody>\s*<\/table>/);
    });
  }
  await check('Each policy names the hashes of the style and the script of its page', () => {
    for (const page of PAGES) {
      const text = read(page);
      const hashOf = (element) => {
        const content = text.slice(text.indexOf(`<${element}>`) + element.length + 2, text.indexOf(`</${element}>`));
        return `${element}-src 'sha256-${createHash('sha256').update(content).digest('base64')}'`;
      };
      for (const element of ['style', 'script']) assert.ok(text.includes(hashOf(element)), `${element} of ${page}`);
    }
  });
  const checkOf = (folder, script) => spawnSync('cmake', ['-D', `FOLDER=${folder}`, '-D', 'CHECK=ON', '-P', script]).status;
  await check('The pages are what their parts give', () => {
    assert.strictEqual(checkOf(TEMPLATES, path.join(SOURCES, 'pages.cmake')), 0);
  });
  await check('A page and a part that changed are noticed', () => {
    const copy = fs.mkdtempSync(path.join(os.tmpdir(), 'pages-template-'));
    const pages = path.join(copy, 'pages');
    const status = () => checkOf(pages, path.join(copy, 'pages.cmake'));
    try {
      fs.cpSync(SOURCES, copy, { recursive: true });
      fs.cpSync(TEMPLATES, pages, { recursive: true });
      assert.strictEqual(status(), 0, 'the copy itself');
      fs.appendFileSync(path.join(pages, 'Notes.html'), '\n');
      assert.strictEqual(status(), 1, 'a page with a line more');
      fs.copyFileSync(path.join(TEMPLATES, 'Notes.html'), path.join(pages, 'Notes.html'));
      fs.appendFileSync(path.join(copy, 'source', 'style.css'), 'p { margin: 0 }\n');
      assert.strictEqual(status(), 1, 'a style with a line more');
    } finally {
      fs.rmSync(copy, { recursive: true });
    }
  });
}

// The fence

const withoutFence = (text) => text.replace(FENCE, '<div');

async function checkDetectors() {
  const stage = await Stage.open();
  const open = (text) => withoutFence(text).replace(/<meta http-equiv="Content-Security-Policy"[^>]*>/, '');
  const text = (name) => message('recv_msg', stage.texts.find(([one]) => one === name)[1]);
  await check('The checks notice a script, a connection and a visit of a page without the fence', async () => {
    await stage.show(chatPage([text('a script')], 'Sms.html', open), async (tab) => {
      assert.strictEqual(await tab.evaluate('window.pwned'), 1);
      assert.strictEqual(tab.dialogs.length, 1);
    });
    for (const name of ['a remote image', 'a preconnect', 'a meta refresh']) {
      const before = stage.listener.calls;
      await stage.show(chatPage([text(name)], 'Sms.html', open), () => {}, { scripts: false, settle: true });
      assert.ok(stage.listener.calls > before, `${name} went unnoticed`);
    }
    await stage.show(chatPage([text('a look-up')], 'Sms.html', open), () => {}, { settle: true });
  });
  const log = await stage.close();
  await check('The network log tells of a name that was looked up', () => assert.ok(log.includes(HOST)));
}

async function checkFence(stage) {
  const after = [message('send_msg', 'Answer'), message('recv_msg', 'Back'), message('del_send_msg', 'Gone')];
  for (const [name, text] of stage.texts) {
    await check(`A message with ${name} shows as it is, and nothing leaves`, async () => {
      const messages = [message('recv_msg', text), ...after];
      await stage.showFenced(chatPage(messages), async (tab) => {
        assertBubbles(await readBubbles(tab), messages);
        assert.strictEqual(await tab.evaluate('document.title'), TITLE);
        assert.deepStrictEqual(tab.messages, [], 'messages of the console');
      });
    });
    await check(`A message with ${name} is readable with scripts off, and nothing leaves`, async () => {
      const page = chatPage([message('recv_msg', text), ...after]);
      await stage.showFenced(page, (tab) => assertReadable(tab, [text, 'Answer', 'Back', 'Gone', TITLE]), { scripts: false });
    });
  }
  const policed = ['a script', 'a script of elsewhere', 'an event handler', 'a remote image', 'remote media', 'a preload',
                   'a style sheet', 'an open <style> that imports', 'objects', 'a <base>'];
  for (const name of policed) {
    await check(`The policy alone stops ${name}`, async () => {
      const [, text] = stage.texts.find(([one]) => one === name);
      await stage.showFenced(chatPage([message('recv_msg', text)], 'Sms.html', withoutFence), () => {});
    });
  }
  // Deliberate: rows have a fixed form and aren't escaped, so a text that contains the exact end of a message and the
  // start of another can't be distinguished from two messages.
  const forged = [['a bubble of the other side', { kind: 'send_msg', party: 'Me', text: 'I never wrote this' }],
                  ['a bubble with markup', { kind: 'recv_msg', party: '<i>Bank</i>', text: stage.texts[0][1] }]];
  for (const [name, second] of forged) {
    await check(`A text that holds a whole row shows as ${name} of its own, and runs nothing`, async () => {
      const forgery = { ...second, date: '2016-05-02 10:00:00' };
      const row = asParsed(messageRow(forgery)).replace(/<\/div>\n$/, '');
      const page = chatPage([message('recv_msg', 'Hi</div>\n' + row), ...after]);
      await stage.showFenced(page, async (tab) => {
        assertBubbles(await readBubbles(tab), [message('recv_msg', 'Hi'), forgery, ...after]);
        assert.match(await tab.evaluate(`document.querySelector('.summary').innerText`), /^5 messages/);
        assert.strictEqual(await tab.evaluate(`document.querySelectorAll('main script, main i, main img').length`), 0);
        assert.deepStrictEqual(tab.messages, [], 'messages of the console');
      });
    });
  }
  for (const page of CHATS) {
    await check(`${page} bears all hostile texts at once`, async () => {
      const messages = stage.texts.map(([, text], at) => message(KINDS[at % 4], text, at));
      await stage.showFenced(chatPage(messages, page), async (tab) => assertBubbles(await readBubbles(tab), messages));
    });
  }
  for (const [page, columns] of Object.entries(TABLES)) {
    const records = stage.texts.map(([name, text]) => recordOf(page, columns, name, text));
    await check(`${page} bears all hostile texts at once`, async () => {
      await stage.showFenced(tablePage(page, records), async (tab) => {
        assert.deepStrictEqual(await readCells(tab), records);
        assert.strictEqual(await tab.evaluate('document.title'), TITLE);
        assert.deepStrictEqual(tab.messages, [], 'messages of the console');
      });
    });
    await check(`${page} bears them with scripts off`, async () => {
      const texts = stage.texts.map(([, text]) => text);
      await stage.showFenced(tablePage(page, records), (tab) => assertReadable(tab, [...texts, TITLE]), { scripts: false });
    });
  }
  await check('Hostile names of device and person stay texts', async () => {
    const evil = `</h1></title><img src="${stage.listener.address}/head" onerror="window.pwned = 1"><textarea>`;
    const page = pageOf('WhatsApp.html', { title: evil, person: `Name: ${evil}, Phone: ${evil}` },
                        after.map((one) => messageRow({ ...one, party: evil })));
    await stage.showFenced(page, async (tab) => {
      assertBubbles(await readBubbles(tab), after.map((one) => ({ ...one, party: evil })));
      assert.strictEqual(await tab.evaluate(`document.querySelector('h1').textContent`), evil);
      assert.strictEqual(await tab.evaluate(`document.querySelector('.person').textContent`), `Name: ${evil}, Phone: ${evil}`);
    });
  });
  await check('A long page of messages with preconnects and images calls nobody', async () => {
    const text = `<link rel="preconnect" href="${stage.listener.address}"><img src="${stage.listener.address}/early">`;
    const messages = Array.from({ length: 3000 }, (_, at) => message('recv_msg', text, at));
    await stage.showFenced(chatPage(messages), async (tab) => assert.strictEqual((await readBubbles(tab)).length, 3000));
  });
}

/// A record with a hostile text in a column that can hold it, between texts of the usual kind.
function recordOf(page, columns, name, text) {
  if (page === 'Notes.html') return ['About ' + name, '2016-05-01 09:12:33', `${text}\nand more`];
  return Array.from({ length: columns }, (_, at) => (at === 2 ? `${text} in ${name}` : at === 0 ? name : ''));
}

async function assertReadable(tab, texts) {
  const shown = await tab.evaluate('document.body.innerText');
  for (const text of texts) assert.ok(shown.includes(asParsed(text)), `not to be read: ${text}`);
}

// Chats

async function checkChats(stage) {
  const messages = [
    message('recv_msg', 'Hi\nthere,  twice  spaced'), message('send_msg', 'Grüße 👍 מה שלומך'), message('del_recv_msg', 'x'),
    message('del_send_msg', 'https://example.org/' + 'long'.repeat(200)), message('recv_msg', ''),
    { ...message('recv_msg', 'no date'), date: '' }, { ...message('recv_msg', 'colons: in: names'), party: 'A: B: Me' },
    message('recv_msg', 'line\r\nends\r\n'), message('recv_msg', 'مرحبا، هل نلتقي غدا؟'),
  ];
  for (const page of CHATS) {
    await check(`${page} shows its messages in their order, received left and sent right`, async () => {
      await stage.showFenced(chatPage(messages, page), async (tab) => {
        assertBubbles(await readBubbles(tab), messages);
        assert.strictEqual(await tab.evaluate(`document.querySelector('h1').textContent`), TITLE);
        assert.strictEqual(await tab.evaluate(`document.querySelector('.person').textContent`), PERSON);
        assert.match(await tab.evaluate(`document.querySelector('.summary').innerText`), /9 messages\s+2 deleted/);
        assert.strictEqual(await tab.evaluate(`document.getElementById('source')`), null);
      });
    });
  }
  await check('The date stands above its bubble, on the same side', async () => {
    await stage.show(chatPage(messages), async (tab) => {
      const lines = await tab.evaluate(`Array.from(document.querySelectorAll('.date'), (line) => {
        const words = document.createRange();
        words.selectNodeContents(line.querySelector('time'));
        const date = words.getBoundingClientRect();
        const bubble = line.nextElementSibling.getBoundingClientRect();
        const frame = line.parentNode.getBoundingClientRect();
        return { above: line.getBoundingClientRect().bottom <= bubble.top, date: date.left - frame.left,
                 sent: line.nextElementSibling.className.includes('send'), half: frame.width / 2, empty: !date.width };
      })`);
      assert.strictEqual(lines.length, messages.length);
      for (const line of lines) {
        assert.ok(line.above);
        if (!line.empty) assert.strictEqual(line.date > line.half, line.sent);
      }
    });
  });
  await check('Deleted messages look different from those that are not', async () => {
    await stage.show(chatPage(messages), async (tab) => {
      const looks = await tab.evaluate(`${JSON.stringify(KINDS)}.map((kind) => {
        const bubble = document.querySelector('.' + kind);
        const style = getComputedStyle(bubble);
        return [style.borderTopStyle, style.backgroundColor, getComputedStyle(bubble, '::before').content].join();
      })`);
      assert.notStrictEqual(looks[0], looks[1]);
      assert.notStrictEqual(looks[2], looks[3]);
      assert.notStrictEqual(looks[0], looks[2]);
      for (const look of [looks[1], looks[3]]) assert.match(look, /dashed.*Deleted/);
    });
  });
  await check('A text from right to left starts at the right of its bubble', async () => {
    await stage.show(chatPage([message('recv_msg', 'שלום\nlatin line, which is much the longer one')]), async (tab) => {
      const gap = await tab.evaluate(`(() => {
        const text = document.querySelector('.recv_msg').firstChild;
        const box = text.parentNode.getBoundingClientRect();
        const side = (from, to) => {
          const range = document.createRange();
          range.setStart(text, from);
          range.setEnd(text, to);
          return range.getBoundingClientRect();
        };
        return { hebrew: box.right - side(0, 4).right, latin: side(5, 10).left - box.left };
      })()`);
      assert.ok(gap.hebrew < 20 && gap.latin < 20, JSON.stringify(gap));
    });
  });
  await check('A page that was cut short shows its raw text', async () => {
    const page = chatPage(messages);
    await stage.show(page.slice(0, page.indexOf('<!--end of content-->', page.indexOf(FENCE))),
                     (tab) => assertReadable(tab, ['Hi\nthere', TITLE]));
  });
  await check('A page without messages says so', async () => {
    await stage.show(chatPage([]), (tab) => assertReadable(tab, ['No messages.', TITLE]));
  });
  await check('Text that is no message is kept', async () => {
    await stage.show(pageOf('Sms.html', { title: TITLE, person: PERSON }, ['stray <b>text\r\n']),
                     (tab) => assertReadable(tab, ['stray <b>text']));
  });
}

// Tables

const CALLS = [
  ['Zoë', '+49 30 2', '2016-05-03 10:00:00', 'Incoming', '0'], ['anna', '+49 30 10', '2016-05-01 10:00:00', 'Outgoing', 'Canceled'],
  ['Émile', '+49 30 1', '2016-05-02 10:00:00', 'Incoming', 'Missed'], ['Berta', '', '2016-04-01 10:00:00', 'Incoming', '0'],
];

async function checkTables(stage) {
  const callPage = () => tablePage('CallHistory.html', CALLS);
  await check('The filter box shows the rows with all of its words', async () => {
    await stage.show(callPage(), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tab.type('incoming 2016-05');
      assert.deepStrictEqual(await readShown(tab), ['Zoë', 'Émile']);
      assert.strictEqual(await tab.evaluate(`document.querySelector('output').textContent`), '2 of 4 rows');
      for (const letter of 'XYZ') await tab.press(letter, 'Key' + letter, letter.charCodeAt(0), letter);
      assert.deepStrictEqual(await readShown(tab), []);
      await tab.evaluate(`document.querySelector('input').select()`);
      await tab.press('Delete', 'Delete', 46);
      assert.strictEqual((await readShown(tab)).length, 4);
    });
  });
  const orders = [['ascending', ['anna', 'Berta', 'Émile', 'Zoë']], ['descending', ['Zoë', 'Émile', 'Berta', 'anna']],
                  ['none', ['Zoë', 'anna', 'Émile', 'Berta']]];
  await check('A click on a head cell sorts up, then down, then as it was', async () => {
    await stage.show(callPage(), async (tab) => {
      for (const [order, names] of orders) {
        await tab.clickOn('th:nth-child(1) button');
        assert.deepStrictEqual(await readShown(tab), names);
        assert.strictEqual(await tab.evaluate(`document.querySelector('th').ariaSort`), order);
      }
      await tab.clickOn('th:nth-child(2) button');
      assert.deepStrictEqual(await readShown(tab), ['Berta', 'Émile', 'Zoë', 'anna']);
      await tab.clickOn('th:nth-child(3) button');
      assert.deepStrictEqual(await readShown(tab), ['Berta', 'anna', 'Émile', 'Zoë']);
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('th'), (cell) => cell.ariaSort)`),
                             ['none', 'none', 'ascending', 'none', 'none']);
    });
  });
  await check('The keyboard alone reaches the head cells and sorts', async () => {
    await stage.show(callPage(), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tab.press('Tab', 'Tab', 9);
      await tab.press('Enter', 'Enter', 13, '\r');
      assert.deepStrictEqual(await readShown(tab), orders[0][1]);
      await tab.press(' ', 'Space', 32, ' ');
      assert.deepStrictEqual(await readShown(tab), orders[1][1]);
    });
  });
  for (const width of [1200, 390]) {
    await check(`Head cells and filter box stay in view at a width of ${width}`, async () => {
      const many = Array.from({ length: 200 }, (_, at) => ['Name ' + at, '', '2016-05-01 10:00:00', 'Incoming', '0']);
      await stage.show(tablePage('CallHistory.html', many), async (tab) => {
        const tops = await tab.evaluate(`(scrollTo(0, 3000), ['.tools', 'th'].map(
          (selector) => Math.round(document.querySelector(selector).getBoundingClientRect().top)))`);
        assert.strictEqual(tops[0], 0);
        assert.ok(tops[1] > 20 && tops[1] < 100, `the head is ${tops[1]} from the top`);
        assert.ok(await tab.evaluate('scrollY') > 2000);
      }, { width });
    });
  }
  await check('Line feeds of notes show', async () => {
    await stage.show(tablePage('Notes.html', [['List', '2016-05-01 10:00:00', 'Milk\nBread\n  Eggs\n\nEnd'], ['One', '', 'line']]), async (tab) => {
      assert.strictEqual((await readCells(tab))[0][2], 'Milk\nBread\n  Eggs\n\nEnd');
      const [five, one] = await tab.evaluate(`Array.from(document.querySelectorAll('tbody tr'), (row) => row.offsetHeight)`);
      assert.ok(five > 2.5 * one, `five lines take ${five}, one takes ${one}`);
    });
  });
  await check('Breaks between phones are lines, and texts in all other columns', async () => {
    await stage.show(tablePage('contacts.html', [['A<br />B', '+49 1<br />+49 2', 'a@b\nc@d', '', '', '', '']]), async (tab) => {
      assert.deepStrictEqual((await readCells(tab))[0].slice(0, 3), ['A<br />B', '+49 1\n+49 2', 'a@b\nc@d']);
      assert.strictEqual(await tab.evaluate(`document.querySelector('td.lines').innerText`), '+49 1\n+49 2');
    });
  });
  await check('Texts that look like cells and rows stay in their row', async () => {
    const records = [['a</td><td>b', '2016-05-01 10:00:00', 'c</td><td>d</td></tr>\n\t<tr><td>e'], ['f', '', 'g']];
    await stage.show(tablePage('Notes.html', records), async (tab) => assert.deepStrictEqual(await readCells(tab), records));
  });
  await check('A table without rows says so', async () => {
    await stage.show(tablePage('Notes.html', []), (tab) => assertReadable(tab, ['No rows.', TITLE]));
  });
  await check('Rows of an unknown form are kept as text', async () => {
    await stage.show(pageOf('Notes.html', { title: TITLE }, ['<p>odd</p>\r\n']), (tab) => assertReadable(tab, ['<p>odd</p>']));
  });
}

// The appearance of all pages

function ordinaryPage(page) {
  const long = 'https://example.org/' + 'abcdefghij'.repeat(30);
  if (CHATS.includes(page)) return chatPage(KINDS.map((kind) => message(kind, long)), page);
  return tablePage(page, [1, 2, 3].map((at) => Array.from({ length: TABLES[page] }, () => long + at)));
}

async function checkLooks(stage) {
  for (const page of PAGES) {
    for (const width of [1200, 390]) {
      await check(`${page} keeps long words within a width of ${width}`, async () => {
        await stage.show(ordinaryPage(page), async (tab) => {
          const wide = await tab.evaluate('Math.max(document.documentElement.scrollWidth, document.body.scrollWidth)');
          assert.ok(wide <= width, `it is ${wide} wide`);
        }, { width });
      });
    }
    await check(`${page} is light or dark as the reader sets, and light on paper`, async () => {
      const colours = async (value, media) => {
        let found;
        await stage.show(ordinaryPage(page), async (tab) => {
          found = await tab.evaluate(`['background-color', 'color'].map((name) =>
            getComputedStyle(document.body).getPropertyValue(name).match(/[0-9.]+/g).map(Number))`);
        }, { features: [{ name: 'prefers-color-scheme', value }], media });
        return { paper: found[0].length === 4 && found[0][3] === 0 ? 255 : found[0][0], ink: found[1][0] };
      };
      const [light, dark, printed] = [await colours('light', ''), await colours('dark', ''), await colours('dark', 'print')];
      assert.ok(light.paper > 200 && light.ink < 80, JSON.stringify(light));
      assert.ok(dark.paper < 60 && dark.ink > 200, JSON.stringify(dark));
      assert.ok(printed.paper > 200 && printed.ink < 80, JSON.stringify(printed));
    });
    await check(`${page} prints without its tools`, async () => {
      await stage.show(ordinaryPage(page), async (tab) => {
        assert.strictEqual(await tab.evaluate(`document.querySelector('.tools')?.offsetHeight || 0`), 0);
        const { data } = await tab.send('Page.printToPDF', {});
        assert.ok(Buffer.from(data, 'base64').subarray(0, 5).equals(Buffer.from('%PDF-')));
      }, { media: 'print' });
    });
  }
}

async function checkBuiltInView(stage) {
  await check('style.html lets the built-in view put in bubbles and empty it', async () => {
    const text = fs.readFileSync(path.join(SOURCES, 'style.html'), 'utf8');
    assert.doesNotMatch(text, /<script|https?:|url\(|@import|\ssrc=|\shref=|var\(/);
    await stage.show(text, async (tab) => {
      await tab.evaluate(`document.body.innerHTML = ''`);
      const boxes = await tab.evaluate(`(() => {
        const long = 'word'.repeat(200);
        document.getElementById('content').innerHTML = ['short', long].map((text) =>
          "<div style='overflow:hidden;'><p class='triangle-left left'>" + text + '</p></div>' +
          "<p class='triangle-right right'>" + text + '</p>').join('');
        return Array.from(document.querySelectorAll('p'), (bubble) => {
          const box = bubble.getBoundingClientRect();
          return { left: box.left, right: innerWidth - box.right, top: box.top, bottom: box.bottom,
                   paper: getComputedStyle(bubble).backgroundColor };
        });
      })()`);
      boxes.forEach((box, at) => {
        if (at % 2) assert.ok(box.right < 40 && box.left > 80, JSON.stringify(box));
        else assert.ok(box.left < 40 && box.right > 80, JSON.stringify(box));
        if (at) assert.ok(box.top >= boxes[at - 1].bottom, 'bubbles overlap');
      });
      assert.notStrictEqual(boxes[0].paper, boxes[1].paper);
      await tab.evaluate(`document.body.innerHTML = ''`);
      assert.strictEqual(await tab.evaluate(`document.getElementById('content') === document.body`), true);
    }, { width: 390 });
  });
}

// Pages written by the program

function pagesBelow(folder) {
  return fs.readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const file = path.join(folder, entry.name);
    if (entry.isDirectory()) return pagesBelow(file);
    return entry.name.endsWith('.html') ? [file] : [];
  });
}

async function checkFolder(stage, folder) {
  const files = pagesBelow(folder);
  await check(`${folder} holds pages`, () => assert.ok(files.length > 0));
  for (const file of files) {
    await check(`${path.relative(folder, file)} is built whole and quiet`, async () => {
      const text = asParsed(fs.readFileSync(file, 'utf8'));
      const source = text.slice(text.indexOf(FENCE));
      assert.ok(source.startsWith(FENCE), 'it has no fence');
      assert.ok(!/\{\|(title|person|content)\|\}/.test(source), 'a token was left in');
      const rows = source.match(/^(<div class="(del_)?(recv|send)_msg">|\t<tr><td>)/gm) || [];
      const before = stage.listener.calls;
      await stage.showFile(file, async (tab) => {
        const found = await tab.evaluate(`document.querySelectorAll('${KINDS.map((kind) => '.' + kind).join()}, tbody tr').length`);
        assert.strictEqual(found, rows.length, 'rows');
        assert.strictEqual(await tab.evaluate(`document.querySelectorAll('#source, .rest').length`), 0, 'text that was not understood');
        assert.strictEqual(await tab.evaluate('document.title'), source.match(/<h1>([^]*?)<\/h1>\n/)[1]);
        assert.deepStrictEqual([tab.messages, tab.dialogs, tab.visited], [[], [], [tab.url]]);
      }, { settle: true });
      assert.strictEqual(stage.listener.calls, before);
    });
  }
}

async function main() {
  const folder = process.argv[2];
  if (!folder) {
    await checkTemplates();
    await checkDetectors();
  }
  const stage = await Stage.open();
  if (folder) await checkFolder(stage, path.resolve(folder));
  else for (const part of [checkFence, checkChats, checkTables, checkLooks, checkBuiltInView, checkLargeTable,
                          checkLargeConversation]) await part(stage);
  const { calls, address } = stage.listener;
  const log = await stage.close();
  await check('In all of this no connection reached the listener, and no address outside was asked for', () => {
    assert.strictEqual(calls, 0);
    assert.ok(log.includes('"constants"'), 'there is no network log');
    for (const place of [address.slice('http://'.length), HOST]) assert.ok(!log.includes(place), `the network log names ${place}`);
  });
  const failures = failureCount();
  console.log(failures ? `${failures} checks failed` : 'all checks passed');
  process.exitCode = failures ? 1 : 0;
}

main().catch((error) => {
  console.log(`FAILED  ${error.stack}`);
  process.exit(1);
});
