// Runs in the design view, hidden from the page: follows the source, marks boxes, reports clicks.
(() => {
  'use strict';
  if (window.kvo) return;

  let text = '';
  let marked = -1;
  let bridge = null;
  let shown = -1;

  const sheet = new CSSStyleSheet();
  sheet.replaceSync(
      'svg[data-kvo]{cursor:pointer}' +
      'svg[data-kvo].kvo-marked{outline:2px solid Highlight;outline-offset:1px}');
  document.adoptedStyleSheets = [sheet];

  // Makes `old` equal to `fresh`, leaving equal parts untouched.
  function morph(old, fresh) {
    if (old.nodeType !== fresh.nodeType || old.nodeName !== fresh.nodeName) {
      old.replaceWith(document.importNode(fresh, true));
      return;
    }
    if (old.nodeType !== Node.ELEMENT_NODE) {
      if (old.data !== fresh.data) old.data = fresh.data;
      return;
    }
    for (const {name} of [...old.attributes])
      if (!fresh.hasAttribute(name)) old.removeAttribute(name);
    for (const {name, value} of fresh.attributes)
      if (old.getAttribute(name) !== value) old.setAttribute(name, value);
    const olds = [...old.childNodes];
    const freshes = [...fresh.childNodes];
    let begin = 0;
    while (begin < olds.length && begin < freshes.length &&
           olds[begin].isEqualNode(freshes[begin]))
      ++begin;
    let oldEnd = olds.length;
    let freshEnd = freshes.length;
    while (oldEnd > begin && freshEnd > begin &&
           olds[oldEnd - 1].isEqualNode(freshes[freshEnd - 1])) {
      --oldEnd;
      --freshEnd;
    }
    const behind = oldEnd < olds.length ? olds[oldEnd] : null;
    for (; begin < oldEnd && begin < freshEnd; ++begin) morph(olds[begin], freshes[begin]);
    for (let at = begin; at < oldEnd; ++at) olds[at].remove();
    for (let at = begin; at < freshEnd; ++at)
      old.insertBefore(document.importNode(freshes[at], true), behind);
  }

  function show() {
    unmark();
    const fresh = new DOMParser().parseFromString(text, 'text/html');
    morph(document.documentElement, fresh.documentElement);
    showMark(false);
  }

  // --- a change inside one cell of a table ---
  // Parsing a large page is slow, and mails are made of tables. Typing into a cell that has an end
  // tag affects that cell only, so only the cell is parsed. In any other case, parses the whole
  // page.

  const reach = 50000;
  const cellTag = /<(\/?)t[dh](?=[\s>\/])[^>]*>/gi;

  function countCells(html) {
    return (html.match(/<t[dh](?=[\s>\/])/gi) || []).length;
  }

  // Returns the start and end of the innermost cell around a part of the text, or null.
  function cellAround(begin, end) {
    const from = Math.max(0, begin - reach);
    const open = [];
    for (const tag of text.slice(from, begin).matchAll(cellTag)) {
      if (!tag[1]) open.push(from + tag.index);
      else open.pop();
    }
    if (open.length === 0) return null;
    let inner = 0;
    for (const tag of text.slice(end, end + reach).matchAll(cellTag)) {
      if (!tag[1]) ++inner;
      else if (inner-- === 0) return [open.pop(), end + tag.index + tag[0].length];
    }
    return null;
  }

  // Returns the element of a text that is exactly one cell; null for any other text.
  function parseCell(html) {
    const template = document.createElement('template');
    // The cell after it proves that nothing is left open.
    template.innerHTML = '<table><tbody><tr>' + html + '<td></td></tr></tbody></table>';
    let row = template.content;
    for (let level = 0; level < 3; ++level) {
      if (row.childNodes.length !== 1) return null;
      row = row.firstChild;
    }
    const [cell, behind] = row.childNodes;
    const whole = row.childNodes.length === 2 && cell.nodeType === Node.ELEMENT_NODE &&
                  behind.nodeName === 'TD' && behind.childNodes.length === 0;
    return whole ? cell : null;
  }

  // Changes the text, and returns whether the change could be shown in its cell.
  function spliceCell(at, removed, added) {
    const place = cellAround(at, at + removed);
    const change = () => {
      text = text.slice(0, at) + added + text.slice(at + removed);
    };
    const before = place && parseCell(text.slice(place[0], place[1]));
    const number = before && countCells(text.slice(0, place[0]));
    const behind = before && countCells(text.slice(place[0]));
    change();
    if (!before) return false;
    const html = text.slice(place[0], place[1] + added.length - removed);
    // Templates ignore quirks mode, which parses a table inside a paragraph differently.
    if (document.compatMode !== 'CSS1Compat' && /<table/i.test(html)) return false;
    const after = parseCell(html);
    const cells = document.querySelectorAll('td,th');
    unmark();
    const known = after && cells.length === number + behind && before.isEqualNode(cells[number]);
    if (known) morph(cells[number], after);
    showMark(false);
    return known;
  }

  function unmark() {
    for (const box of document.querySelectorAll('svg.kvo-marked')) box.removeAttribute('class');
  }

  function showMark(scroll) {
    const box = marked < 0 ? null : document.querySelector('svg[data-kvo="' + marked + '"]');
    if (!box) return;
    box.setAttribute('class', 'kvo-marked');
    if (scroll) box.scrollIntoView({block: 'nearest', inline: 'nearest'});
  }

  // Reports the displayed revision of the page.
  function report(revision) {
    shown = revision;
    if (bridge) bridge.Shown(revision);
  }

  window.kvo = {
    // `loaded`: the document already shows this text.
    begin(loaded, revision, all) {
      text = all;
      if (!loaded) show();
      report(revision);
    },
    splice(at, removed, revision, added) {
      if ((removed || added) && !spliceCell(at, removed, added)) show();
      report(revision);
    },
    // For tests: the text that the view should show.
    text: () => text,
    mark(index) {
      unmark();
      marked = index;
      showMark(true);
    },
  };

  new QWebChannel(qt.webChannelTransport, channel => {
    bridge = channel.objects.kvo;
    bridge.Shown(shown);
  });

  function boxOf(event) {
    const box = event.target.closest && event.target.closest('svg[data-kvo]');
    return box ? Number(box.getAttribute('data-kvo')) : -1;
  }
  function listen(kind, react) {
    document.addEventListener(kind, event => {
      event.preventDefault();
      event.stopPropagation();
      const index = boxOf(event);
      if (index >= 0 && bridge) react(index);
    }, true);
  }
  listen('click', index => bridge.Clicked(index));
  listen('dblclick', index => bridge.DoubleClicked(index));
  listen('submit', () => {});
})();
