// Hostile texts. Each tries to run a script, to send a request, or to break the page.

'use strict';

/// @param remote the address that must never be called, such as "http://127.0.0.1:4711".
/// @param host   a name that must never be looked up.
/// @return pairs of a name and a text; every text must be shown verbatim.
function hostileTexts(remote, host) {
  return Object.entries({
    'a script': '<script>window.pwned = 1; alert(1)</script>',
    'a script of elsewhere': `<script src="${remote}/script.js"></script>`,
    'a module': `<script type="module">import "${remote}/module.js"; window.pwned = 1</script>`,
    'speculation rules': `<script type="speculationrules">{"prefetch":[{"urls":["${remote}/rules"]}]}</script>`,
    'an event handler': '<img src=x onerror="window.pwned = 1; alert(1)">',
    'handlers of SVG and media': '<svg onload="window.pwned = 1"><video onerror="window.pwned = 1" src=x autoplay>',
    'a remote image': `<img src="${remote}/image.png" srcset="${remote}/image2.png 2x">`,
    'remote media': `<video src="${remote}/v.mp4" poster="${remote}/p.png" autoplay></video><audio src="${remote}/a.mp3" autoplay>`,
    'a form': `<form action="${remote}/form" method="post"><input name="a" value="b" autofocus onfocus="window.pwned = 1"><button>Go</button></form>`,
    'a meta refresh': `<meta http-equiv="refresh" content="0;url=${remote}/refresh">`,
    'a meta refresh before open text': `<meta http-equiv="refresh" content="0;url=${remote}/refresh"><plaintext>`,
    'a meta refresh out of shadow': `</template></noscript><meta http-equiv="refresh" content="0;url=${remote}/refresh"><textarea>`,
    'an end of the fence': `</plaintext></div></main></body></html><script>window.pwned = 1</script><img src="${remote}/behind">`,
    'ends of elements': '</div></section></main></td></tr></tbody></table>',
    'an end mark': 'a<!--end-of-content-->\n</main>b<!--end-of-content-->',
    'an open <b>': '<b><i><u>',
    'an open <textarea>': '<textarea rows="2">',
    'an open comment': 'See <!-- this',
    'an open <style>': '<style>* { display: none } div { background: red }',
    'an open <style> that imports': `<style>@import "${remote}/import.css"; body { background: url(${remote}/b.png) }`,
    'an open <plaintext>': '<plaintext>',
    'an open <title>': '<title>Not the title',
    'an open <select>': '<select><option>',
    'an open <svg>': '<svg><style><![CDATA[',
    'an open <template>': '<template><div>',
    'an open <script>': '<script>/*',
    'an open <noscript>': '<noscript><xmp>',
    'an open <table>': '<table><tr><td>',
    'an open tag': '<div class="',
    'a <base>': `<base href="${remote}/base/"><img src="relative.png">`,
    'a style sheet': `<link rel="stylesheet" href="${remote}/sheet.css">`,
    'a preload': `<link rel="preload" as="script" href="${remote}/preload.js"><link rel="modulepreload" href="${remote}/m.js">`,
    'a prefetch': `<link rel="prefetch" href="${remote}/next"><link rel="prerender" href="${remote}/next">`,
    'a preconnect': `<link rel="preconnect" href="${remote}">`,
    'a look-up': `<link rel="dns-prefetch" href="http://${host}">`,
    'a frame': `<iframe src="${remote}/frame"></iframe><iframe srcdoc="<script>parent.pwned = 1</script>"></iframe>`,
    'objects': `<object data="${remote}/object"></object><embed src="${remote}/embed">`,
    'a javascript link': '<a href="javascript:window.pwned = 1" id="source">Click</a>',
    'a frame set': `<frameset><frame src="${remote}/frame">`,
    'a style attribute': `<p style="position: fixed; inset: 0; background: url(${remote}/style.png)">`,
    'the start of a message': '</div>\n<div class="date">Date: soon Ann:</div>\nand no more',
    'tokens': '{|content|} {|title|} {|person|}',
    'entities': '&lt;b&gt; &amp;amp; &#x26; &nbsp',
    'replacement patterns': "$& $1 $` $' \\n %s",
  });
}

module.exports = { hostileTexts };
