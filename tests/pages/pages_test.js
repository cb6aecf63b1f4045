// Checks the exported pages in a real browser. Run by tests/pages/run.

'use strict';

const assert = require('assert');
const { spawnSync } = require('child_process');
const { createHash } = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { checkChats } = require('./chats');
const { KINDS, TITLE, PERSON, WHO, message, chatPage, readBubbles, assertBubbles, asParsed } = require('./conversation');
const { checkLines } = require('./lines');
const { checkLargeConversation } = require('./large');
const { HOST, Stage, check, failureCount } = require('./stage');
const { TEMPLATES, CONTENT, FENCE, assertReadable, messageRow, pageOf } = require('./rows');
const { TABLES, tablePage, readCells } = require('./table');
const { checkTables, checkLargeTable } = require('./tables');

const SOURCES = path.join(__dirname, '..', '..', 'template');
const CHATS = ['Sms.html', 'WhatsApp.html'];
const PAGES = [...CHATS, ...Object.keys(TABLES)];

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
      assert.match(text, /<head>\s*<meta http-equiv="Content-Security-Policy" content="default-src 'none'; script-src 'sha256-[^']+'; style-src 'sha256-[^']+'; font-src data:; base-uri 'none'; form-action 'none'">/);
      assert.ok(Buffer.from(text).indexOf('<meta charset="utf-8">') < 1000, 'the charset comes late');
      assert.doesNotMatch(text, /https?:\/\/\w|url\((?!data:font\/woff2;base64,)|@import|\ssrc=|\shref=/);
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
        assert.strictEqual(await tab.evaluate('document.title'), `${WHO} – ${TITLE}`);
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
  const files = pagesBelow(folder).filter((file) => file !== path.join(folder, 'index.html'));  // which has no rows
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
        const found = await tab.evaluate(`document.querySelector('table')?.ariaRowCount - 1 ||
          document.querySelectorAll('${KINDS.map((kind) => '.' + kind).join()}').length`);
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
  else for (const part of [checkFence, checkLines, checkChats, checkTables, checkLooks, checkBuiltInView, checkLargeTable,
                          checkLargeConversation, require('./index').checkIndex]) await part(stage);
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
