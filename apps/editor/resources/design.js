// Runs in the design view, hidden from the page: follows the source, marks boxes, and reports what
// the author does. docs/design-messages.md describes what it sends and what it understands.
(() => {
  'use strict';
  if (window.kvo) return;

  let text = '';      // what the source says that the view shows
  let marked = -1;
  let bridge = null;
  let textRevision = -1;  // the revision of the page that `text` belongs to
  let shown = -1;         // the one that the view shows, ahead of `text` by changes in texts
  let dirty = false;      // the view is behind `text`
  let base = '';          // then: the text that it shows
  let lost = false;       // then: it shows something else
  let awaited = -1;       // then: it catches up with no revision before this one
  let held = false;       // settle() waits for that revision

  const sheet = new CSSStyleSheet();
  sheet.replaceSync(
      'img[data-kvo]{cursor:pointer}' +
      'img[data-kvo].kvo-marked{outline:2px solid Highlight!important;outline-offset:1px}');
  const problemSheet = new CSSStyleSheet();
  const lockSheet = new CSSStyleSheet();
  lockSheet.replaceSync('*{cursor:not-allowed!important}');
  document.adoptedStyleSheets = [sheet, problemSheet];

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
    dirty = lost = false;
    showMark(false);
  }

  function fallBehind(unknown) {
    if (!dirty) base = text;
    dirty = true;
    lost = lost || unknown;
  }

  // Shows what the text has become while the view was behind.
  function catchUp() {
    if (lost) return show();
    const now = text;
    let at = 0;
    const shorter = Math.min(base.length, now.length);
    while (at < shorter && base.charCodeAt(at) === now.charCodeAt(at)) ++at;
    let tail = 0;
    while (tail < shorter - at &&
           base.charCodeAt(base.length - 1 - tail) === now.charCodeAt(now.length - 1 - tail))
      ++tail;
    text = base;
    dirty = false;
    if (!spliceCell(at, base.length - at - tail, now.slice(at, now.length - tail))) show();
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

  // Whether two nodes differ in texts only.
  function isAlike(one, other) {
    if (one.nodeType !== other.nodeType || one.nodeName !== other.nodeName ||
        one.childNodes.length !== other.childNodes.length)
      return false;
    if (one.nodeType === Node.ELEMENT_NODE &&
        !one.cloneNode(false).isEqualNode(other.cloneNode(false)))
      return false;
    for (let a = one.firstChild, b = other.firstChild; a; a = a.nextSibling, b = b.nextSibling)
      if (!isAlike(a, b)) return false;
    return true;
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
    if (!after || cells.length !== number + behind) return false;
    unmark();
    // What was typed here is there already.
    const typed = after.isEqualNode(cells[number]);
    const known = typed || isAlike(before, cells[number]);
    if (known && !typed) morph(cells[number], after);
    showMark(false);
    return known;
  }

  function unmark() {
    for (const box of document.querySelectorAll('img.kvo-marked')) box.removeAttribute('class');
  }

  function showMark(scroll) {
    const box = marked < 0 ? null : document.querySelector('img[data-kvo="' + marked + '"]');
    if (!box) return;
    box.setAttribute('class', 'kvo-marked');
    if (scroll) box.scrollIntoView({block: 'nearest', inline: 'nearest'});
  }

  // Reports the displayed revision of the page.
  function report(revision) {
    shown = revision;
    if (bridge) bridge.Shown(revision);
    if (unmarked && !dirty) markProblems();
  }

  // --- places ---
  // A place is a path from the html element down. Each level has the child's number and a hash of
  // the names of all children, so that the program sees whether its tree is the same. Adjoining
  // texts are one child; white space between elements is none.

  const hashStart = 2166136261;
  function hash(string, value = hashStart) {
    for (let at = 0; at < string.length; ++at)
      value = Math.imul(value ^ string.charCodeAt(at), 16777619);
    return value >>> 0;
  }

  const isBlank = string => /^[ \t\n\r\f]*$/.test(string);
  const isText = node => node !== null && node.nodeType === Node.TEXT_NODE;

  // A child: its first and last node, and its text if it is one.
  function childrenOf(parent) {
    const children = [];
    let before = null;
    for (let node = parent.firstChild; node; node = node.nextSibling) {
      if (isText(node) && isText(before)) {
        const last = children[children.length - 1];
        last.last = node;
        last.text += node.data;
      } else {
        children.push({first: node, last: node, text: isText(node) ? node.data : null});
      }
      before = node;
    }
    for (const child of children) child.blank = child.text !== null && isBlank(child.text);
    return children;
  }

  function nameOf(node) {
    if (isText(node)) return '#text';
    if (node.nodeType !== Node.ELEMENT_NODE) return '#comment';
    return node.localName;
  }

  function namesOf(children) {
    let value = hashStart;
    for (const child of children)
      if (!child.blank) value = hash(nameOf(child.first) + '\n', value);
    return value;
  }

  function pathTo(element) {
    const path = [];
    for (; element !== document.documentElement; element = element.parentNode) {
      const children = childrenOf(element.parentNode);
      const counted = children.filter(child => !child.blank);
      path.unshift(
          [counted.findIndex(child => child.first === element), namesOf(children)]);
    }
    return path;
  }

  // Moves a place from between children into a text beside it.
  function settled(node, offset) {
    if (node.localName === 'img') {
      offset = [...node.parentNode.childNodes].indexOf(node) + (offset > 0 ? 1 : 0);
      node = node.parentNode;
    }
    if (isText(node)) return [node, offset];
    const before = offset > 0 ? node.childNodes[offset - 1] : null;
    if (isText(before)) return [before, before.length];
    const after = offset < node.childNodes.length ? node.childNodes[offset] : null;
    return isText(after) ? [after, 0] : [node, offset];
  }

  function placeOf(node, offset) {
    [node, offset] = settled(node, offset);
    const parent = isText(node) ? node.parentNode : node;
    const children = childrenOf(parent);
    const place = {path: pathTo(parent), kind: 'gap', offset: 0, hash: 0};
    let number = 0;
    if (!isText(node)) {
      const next = node.childNodes[offset] || null;
      for (const child of children) {
        if (child.first === next) break;
        if (!child.blank) ++number;
      }
    } else {
      for (const child of children) {
        let at = 0;
        let found = false;
        for (let each = child.first; isText(each); each = each.nextSibling) {
          if (each === node) {
            found = true;
            break;
          }
          at += each.length;
        }
        if (found) {
          place.kind = child.blank ? 'blank' : 'text';
          place.offset = at + offset;
          place.hash = hash(child.text);
          break;
        }
        if (!child.blank) ++number;
      }
    }
    place.path.push([number, namesOf(children)]);
    return place;
  }

  // Returns the node and the offset of a place; null if there is none.
  function resolve(place) {
    let node = document.documentElement;
    const levels = place.path.length;
    for (let level = 0; level < levels; ++level) {
      const children = childrenOf(node);
      let number = 0;
      let found = null;
      for (const child of children) {
        if (level + 1 === levels && place.kind === 'blank' && child.blank &&
            number === place.path[level][0]) {
          found = child;
          break;
        }
        if (child.blank) continue;
        if (number === place.path[level][0]) {
          found = child;
          break;
        }
        ++number;
      }
      if (level + 1 < levels) {
        if (!found) return null;
        node = found.first;
        continue;
      }
      if (place.kind === 'gap' || !found || found.text === null) {
        const next = found ? found.first : null;
        const index = next ? [...node.childNodes].indexOf(next) : node.childNodes.length;
        return settled(node, index);
      }
      let offset = place.offset;
      let each = found.first;
      while (offset > each.length && each !== found.last) {
        offset -= each.length;
        each = each.nextSibling;
      }
      return [each, Math.min(offset, each.length)];
    }
    return null;
  }

  // --- problems ---
  // A style sheet marks their elements, so that nothing in the page's tree says so.

  let problems = [];
  let unmarked = false;       // they belong to a text that the view does not show yet
  let problemsOf = new Map();  // the numbers of the problems of an element
  let problemRules = '';
  let pointed = null;         // the element under the pointer
  let told = '';

  // Legible on light and dark mails, and told apart from each other and from the selected box by
  // their shapes.
  const outlines = {error: '3px double #e0142f', warning: '2px dashed #c46200'};

  const isWhole = element => element === document.documentElement || element === document.body;

  // Returns a function that remembers its results.
  function remembering(find) {
    const found = new Map();
    return node => {
      if (!found.has(node)) found.set(node, find(node));
      return found.get(node);
    };
  }

  // Returns the innermost element on the way to a place, as far as the trees agree.
  function elementAt({path, kind}, childrenIn) {
    let node = document.documentElement;
    for (let level = 0; level < path.length; ++level) {
      // The last level is a place in the element; an element behind a gap holds it in its tag.
      if (level + 1 === path.length && kind !== 'gap') break;
      const {names, nodes} = childrenIn(node);
      const next = nodes[path[level][0]];
      if (names !== path[level][1] || !next || next.nodeType !== Node.ELEMENT_NODE) break;
      node = next;
    }
    return node;
  }

  function selectorOf(element, numbersIn) {
    let selector = '';
    for (; element.parentElement; element = element.parentElement)
      selector = '>:nth-child(' + numbersIn(element.parentElement).get(element) + ')' + selector;
    return ':root' + selector;
  }

  function markProblems() {
    unmarked = false;
    problemsOf = new Map();
    const faulty = new Set();
    const childrenIn = remembering(node => {
      const children = childrenOf(node);
      const nodes = children.filter(child => !child.blank).map(child => child.first);
      return {names: namesOf(children), nodes};
    });
    const numbersIn = remembering(
        parent => new Map([...parent.children].map((child, index) => [child, index + 1])));
    problems.forEach(({box, place, error}, number) => {
      let element = box >= 0 && document.querySelector('img[data-kvo="' + box + '"]');
      if (!element) element = elementAt(place, childrenIn);
      while (element.parentElement && element.getClientRects().length === 0)
        element = element.parentElement;
      if (!problemsOf.has(element)) problemsOf.set(element, []);
      problemsOf.get(element).push(number);
      if (error) faulty.add(element);
    });
    let rules = '';
    for (const element of problemsOf.keys()) {
      const selector = selectorOf(element, numbersIn);
      const outline = outlines[faulty.has(element) ? 'error' : 'warning'];
      rules += selector + '{outline:' + outline + '!important;outline-offset:' +
               (isWhole(element) ? '-3px' : '1px') + '!important}' + selector +
               '.kvo-marked{outline-offset:4px!important;' +
               'box-shadow:0 0 0 3px Highlight!important}';
    }
    // Setting them makes the browser style the whole page anew.
    if (rules !== problemRules) problemSheet.replaceSync(rules);
    problemRules = rules;
    tellPointed();
  }

  // A mark around the whole page counts only where the pointer is on nothing else.
  function tellPointed() {
    let numbers = [];
    for (let element = pointed; element; element = element.parentElement) {
      if (!problemsOf.has(element) || (isWhole(element) && element !== pointed)) continue;
      numbers = problemsOf.get(element);
      break;
    }
    if (!bridge || told === numbers.join()) return;
    told = numbers.join();
    bridge.Pointed(numbers);
  }

  document.addEventListener('mouseover', event => {
    pointed = event.target;
    tellPointed();
  }, true);

  // --- what the author does ---
  // A change inside one text is shown at once and then sent; any other is sent and shown when the
  // program has answered. Until then the next inputs wait in a queue.

  let sent = 0;           // the number of the last message with a change
  let handled = 0;        // of the last one that the program has answered
  let waiting = false;    // for the answer to a command
  let queue = [];
  let composing = null;
  let armed = false;      // the next typed text is the program's to format
  let typedSpace = null;  // a space that is not breaking only until something follows it
  let spaceSent = false;  // one that the program has to answer
  let reported = '';

  const selection = () => document.getSelection();

  // A view that nobody has clicked into yet has its caret at the start.
  function selectedRange() {
    const current = selection();
    if (!current.rangeCount && document.body) current.collapse(document.body, 0);
    return current.rangeCount ? current.getRangeAt(0) : null;
  }

  function command(name, value = '', range = selectedRange()) {
    if (!bridge || !range) return;
    waiting = true;
    bridge.Command(++sent, shown, name, placeOf(range.startContainer, range.startOffset),
                   placeOf(range.endContainer, range.endOffset), value);
  }

  // Returns the visible character beside a place in its line; '' at the line's edge.
  function neighbour(node, offset, backwards) {
    if (backwards ? offset > 0 : offset < node.length)
      return node.data[backwards ? offset - 1 : offset];
    const walker = document.createTreeWalker(document.body);
    walker.currentNode = node;
    for (;;) {
      const next = backwards ? walker.previousNode() : walker.nextNode();
      if (!next) return '';
      if (isText(next)) {
        if (next.length) return next.data[backwards ? next.length - 1 : 0];
      } else if (next.nodeType === Node.ELEMENT_NODE) {
        if (next.localName === 'img') return 'x';
        if (!getComputedStyle(next).display.startsWith('inline') || next.localName === 'br')
          return '';
      }
    }
  }

  // A space that would not be seen becomes one that does not break.
  function visible(node, begin, end, typed) {
    if (typed !== ' ' || getComputedStyle(node.parentNode).whiteSpace.startsWith('pre'))
      return typed;
    const before = neighbour(node, begin, true);
    const after = neighbour(node, end, false);
    return before === '' || isBlank(before) || after === '' || isBlank(after) ? '\u00a0' : typed;
  }

  function editText(node, begin, end, typed) {
    if (typed !== ' ' && typed !== '' && begin === end && typedSpace &&
        typedSpace.node === node && typedSpace.at === begin - 1 &&
        node.data[begin - 1] === '\u00a0') {
      const before = neighbour(node, begin - 1, true);
      if (before !== '' && !isBlank(before) && before !== '\u00a0') {
        --begin;
        typed = ' ' + typed;
      }
    }
    typedSpace = null;
    const fresh = visible(node, begin, end, typed);
    if (fresh !== typed) typedSpace = {node, at: begin};
    const place = placeOf(node, begin);
    const first = place.offset;
    const last = first + end - begin;
    node.replaceData(begin, end - begin, fresh);
    // Sent before the caret moves, for which the browser lays the page out.
    bridge.Edited(++sent, shown, place, first, last, fresh);
    selection().collapse(node, begin + fresh.length);
  }

  function replace(range, typed) {
    const [node, begin] = settled(range.startContainer, range.startOffset);
    const [last, end] = settled(range.endContainer, range.endOffset);
    const format = armed && typed !== '' && range.collapsed;
    armed = false;
    if (format) {
      const fresh = isText(node) ? visible(node, begin, end, typed) : typed;
      spaceSent = fresh !== typed;
      return command('type', fresh, range);
    }
    const simple = isText(node) && node === last && begin <= end &&
                   !isBlank(node.data.slice(0, begin) + typed + node.data.slice(end)) &&
                   !isBlank(node.data);
    if (simple)
      editText(node, begin, end, typed);
    else if (typed !== '' || !range.collapsed)
      command('type', typed, range);
  }

  // Returns where the last character before a place in a text begins; the place itself where that
  // character is a blank that does not show.
  const graphemes = new Intl.Segmenter(undefined, {granularity: 'grapheme'});
  function startOfLast(node, offset) {
    if (offset === 0) return offset;
    if (isBlank(node.data[offset - 1])) {
      const before = neighbour(node, offset - 1, true);
      return before === '' || isBlank(before) ? offset : offset - 1;
    }
    const from = Math.max(0, offset - 50);
    let begin = offset - 1;
    for (const {index} of graphemes.segment(node.data.slice(from, offset))) begin = from + index;
    return begin;
  }

  const deletions = {
    deleteContentBackward: ['backward', 'character'],
    deleteContentForward: ['forward', 'character'],
    deleteWordBackward: ['backward', 'word'],
    deleteWordForward: ['forward', 'word'],
    deleteSoftLineBackward: ['backward', 'lineboundary'],
    deleteSoftLineForward: ['forward', 'lineboundary'],
    deleteHardLineBackward: ['backward', 'paragraphboundary'],
    deleteHardLineForward: ['forward', 'paragraphboundary'],
  };
  const commands = {
    insertParagraph: 'enter',
    insertLineBreak: 'break',
    formatBold: 'bold',
    formatItalic: 'italic',
    formatUnderline: 'underline',
    undo: 'undo',
    redo: 'redo',
    copy: 'copy',
    cut: 'cut',
    paste: 'paste',
  };

  function perform({type, data}) {
    const range = selectedRange();
    if (!range) return;
    if (type === 'insertText' || type === 'insertReplacementText') return replace(range, data || '');
    if (type === 'deleteContentBackward' && range.collapsed) {
      const [node, offset] = settled(range.startContainer, range.startOffset);
      const begin = isText(node) ? startOfLast(node, offset) : offset;
      if (begin < offset) {
        range.setStart(node, begin);
        range.setEnd(node, offset);
        return replace(range, '');
      }
    }
    if (deletions[type]) {
      const old = range.cloneRange();
      if (range.collapsed) selection().modify('extend', ...deletions[type]);
      const wanted = selectedRange().cloneRange();
      if (old.collapsed) {
        selection().removeAllRanges();
        selection().addRange(old);
      }
      if (!wanted.collapsed) replace(wanted, '');
      return;
    }
    if (type === 'move') return selection().modify(...data);
    if (type === 'program') return command(data.name, data.value);
    if (type === 'insertParagraph') {
      const box = selectedBox();
      if (box >= 0) return bridge.DoubleClicked(box);
    }
    if (commands[type]) command(commands[type]);
  }

  function input(event) {
    if (!bridge) return;
    if (waiting || composing) {
      queue.push(event);
      return;
    }
    perform(event);
  }

  function settle(number) {
    handled = Math.max(handled, number);
    if (handled < sent) return;
    if (dirty && textRevision < awaited) {
      waiting = held = true;
      return;
    }
    waiting = false;
    if (composing) return;
    if (dirty) {
      catchUp();
      report(shown);
    }
    while (queue.length && !waiting) perform(queue.shift());
  }

  document.addEventListener('beforeinput', event => {
    if (event.inputType === 'insertCompositionText' || event.inputType === 'deleteCompositionText')
      return;
    event.preventDefault();
    event.stopPropagation();
    input({type: event.inputType, data: event.data});
  }, true);

  const moves = {
    ArrowLeft: ['backward', 'character'],
    ArrowRight: ['forward', 'character'],
    ArrowUp: ['backward', 'line'],
    ArrowDown: ['forward', 'line'],
    Home: ['backward', 'lineboundary'],
    End: ['forward', 'lineboundary'],
  };

  document.addEventListener('keydown', event => {
    if (waiting && moves[event.key] && !event.ctrlKey) {
      event.preventDefault();
      input({type: 'move', data: [event.shiftKey ? 'extend' : 'move', ...moves[event.key]]});
    }
    if (!event.ctrlKey || event.altKey || event.metaKey) return;
    const key = event.key.toLowerCase();
    const type = key === 'z' ? (event.shiftKey ? 'redo' : 'undo') : key === 'y' ? 'redo' : null;
    if (!type) return;
    event.preventDefault();
    input({type});
  }, true);

  for (const type of ['copy', 'cut', 'paste']) {
    document.addEventListener(type, event => {
      event.preventDefault();
      event.stopPropagation();
      input({type});
    }, true);
  }

  // The text of a running composition belongs to the input method.
  document.addEventListener('compositionstart', () => {
    const range = selectedRange();
    if (!range) return;
    const [node, begin] = settled(range.startContainer, range.startOffset);
    const [last, end] = settled(range.endContainer, range.endOffset);
    composing = {
      node, begin, end,
      data: isText(node) && node === last ? node.data : null,
      from: placeOf(node, begin),
      to: placeOf(last, end),
    };
  }, true);
  document.addEventListener('compositionend', event => {
    if (!composing) return;
    const {node, begin, end, data, from, to} = composing;
    composing = null;
    // After the event, because the browser still takes its marks off the text. Timers do not run
    // in a page whose own scripts are off.
    Promise.resolve().then(() => {
      if (data !== null && !isBlank(data) && node.isConnected && !armed) {
        node.data = data;
        if (event.data !== '' || begin !== end) editText(node, begin, end, event.data);
      } else {
        show();
        if (event.data !== '') {
          armed = false;
          waiting = true;
          bridge.Command(++sent, shown, 'type', from, to, event.data);
        }
      }
      settle(handled);
    });
  }, true);

  // --- selection and boxes ---

  function selectedBox() {
    const range = selectedRange();
    if (!range || range.startContainer !== range.endContainer ||
        range.endOffset !== range.startOffset + 1)
      return -1;
    const node = range.startContainer.childNodes[range.startOffset];
    const box = node && node.nodeType === Node.ELEMENT_NODE && node.getAttribute('data-kvo');
    return box === null || box === undefined || box === false ? -1 : Number(box);
  }

  function placesOf(range) {
    const from = placeOf(range.startContainer, range.startOffset);
    return [from, range.collapsed ? from : placeOf(range.endContainer, range.endOffset)];
  }

  document.addEventListener('selectionchange', () => {
    const range = selectedRange();
    if (!bridge || !range || waiting || composing) return;
    const places = placesOf(range);
    const key = JSON.stringify(places);
    if (key === reported) return;
    reported = key;
    bridge.Selected(sent, shown, ...places);
  });

  // Asks whether the place under the pointer can be edited.
  let under = null;
  document.addEventListener('mousemove', event => {
    if (event.target === under || event.buttons) return;
    under = event.target;
    document.adoptedStyleSheets = [sheet, problemSheet];
    const range = document.caretRangeFromPoint(event.clientX, event.clientY);
    if (range && bridge && !waiting && isText(range.startContainer))
      bridge.Asked(shown, placeOf(range.startContainer, range.startOffset));
  }, true);

  window.kvo = {
    // `loaded`: the document already shows this text.
    begin(loaded, revision, all, number) {
      text = all;
      textRevision = awaited = revision;
      shown = -1;
      dirty = lost = held = false;
      sent = handled = number;
      document.designMode = 'on';
      queue = [];
      waiting = false;
      if (!loaded) show();
      report(revision);
    },
    // The page has changed. `number` is the last message that the change holds; with `written`, all
    // of it was a change in a text that the view has been told, or has told itself.
    splice(at, removed, revision, added, number, written) {
      handled = Math.max(handled, number);
      textRevision = revision;
      const behind = handled < sent || composing || revision < Math.max(shown, awaited);
      const fresh = () => text.slice(0, at) + added + text.slice(at + removed);
      if (written && !dirty) {
        text = fresh();
      } else if (dirty || behind) {
        fallBehind(false);
        text = fresh();
        if (!behind) catchUp();
      } else if ((removed || added) && !spliceCell(at, removed, added)) {
        show();
      }
      shown = Math.max(shown, revision);
      if (dirty) return;
      report(shown);
      if (held) {
        held = false;
        settle(handled);
      }
    },
    // The text at a place is another one in this revision of the page.
    write(place, fresh, revision) {
      const found = composing ? null : resolve(place);
      const node = found && found[0];
      const alone = isText(node) && !isText(node.previousSibling) && !isText(node.nextSibling);
      if (dirty || !alone || hash(node.data) !== place.hash) {
        fallBehind(true);
        awaited = revision;
        return;
      }
      const old = node.data;
      const shorter = Math.min(old.length, fresh.length);
      let at = 0;
      while (at < shorter && old[at] === fresh[at]) ++at;
      let tail = 0;
      while (tail < shorter - at && old[old.length - 1 - tail] === fresh[fresh.length - 1 - tail])
        ++tail;
      typedSpace = null;
      node.replaceData(at, old.length - at - tail, fresh.slice(at, fresh.length - tail));
      report(revision);
    },
    // The program is about to change the page at the selection: further inputs wait for settle().
    wait() {
      waiting = true;
    },
    settle,
    // A message was refused: the source wins, as it is in this revision.
    refuse(number, revision) {
      fallBehind(true);
      awaited = Math.max(awaited, revision);
      settle(number);
    },
    // `quietly`: without reporting it.
    select(from, to, quietly) {
      const begin = resolve(from);
      const end = to ? resolve(to) : begin;
      if (quietly && bridge) bridge.QuietlySelected();
      if (!begin || !end) return;
      typedSpace = spaceSent && isText(begin[0]) ? {node: begin[0], at: begin[1] - 1} : null;
      spaceSent = false;
      selection().setBaseAndExtent(begin[0], begin[1], end[0], end[1]);
      if (quietly) reported = JSON.stringify(placesOf(selectedRange()));
      const node = begin[0].nodeType === Node.ELEMENT_NODE ? begin[0] : begin[0].parentNode;
      const box = selection().getRangeAt(0).getBoundingClientRect();
      if (box.bottom < 0 || box.top > innerHeight || box.height === 0)
        node.scrollIntoView({block: 'nearest', inline: 'nearest'});
    },
    // A command of the program for what is selected.
    run(name, value) {
      input({type: 'program', data: {name, value}});
    },
    // Puts the caret under a point of the view; false if there is no text.
    pointAt(x, y) {
      const range = document.caretRangeFromPoint(x, y);
      if (!range) return false;
      selection().removeAllRanges();
      selection().addRange(range);
      return true;
    },
    arm(on) {
      armed = on;
    },
    pointer(editable) {
      document.adoptedStyleSheets =
          editable ? [sheet, problemSheet] : [sheet, problemSheet, lockSheet];
    },
    // For tests: the text that the view should show, and whether all messages are answered.
    text: () => text,
    idle: () => handled === sent && textRevision === shown && !waiting && !composing && !dirty && queue.length === 0,
    // Marks elements: the box of a control, else what is at a place.
    problems(list) {
      problems = list;
      unmarked = dirty;
      if (!dirty) markProblems();
    },
    mark(index) {
      if (index < 0 && marked < 0) return;
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
    const box = event.target.closest && event.target.closest('img[data-kvo]');
    return box ? Number(box.getAttribute('data-kvo')) : -1;
  }
  function selectBox(box) {
    const range = document.createRange();
    range.selectNode(box);
    selection().removeAllRanges();
    selection().addRange(range);
  }
  for (const kind of ['mousedown', 'mouseup']) {
    document.addEventListener(kind, event => {
      const box = event.target.closest && event.target.closest('img[data-kvo]');
      if (box && event.button === 0) selectBox(box);
    }, true);
  }

  // --- dragging within the view ---
  let dragged = null;
  document.addEventListener('dragstart', event => {
    const box = event.target.closest && event.target.closest('img[data-kvo]');
    if (box) selectBox(box);
    const range = selectedRange();
    dragged = range && !range.collapsed && !waiting
        ? [placeOf(range.startContainer, range.startOffset),
           placeOf(range.endContainer, range.endOffset)]
        : null;
    if (!dragged) event.preventDefault();
  }, true);
  document.addEventListener('dragover', event => {
    event.preventDefault();
    event.dataTransfer.dropEffect = dragged ? 'move' : 'copy';
  }, true);
  document.addEventListener('dragend', () => {
    dragged = null;
  }, true);
  document.addEventListener('drop', event => {
    event.preventDefault();
    event.stopPropagation();
    const range = document.caretRangeFromPoint(event.clientX, event.clientY);
    const from = dragged;
    dragged = null;
    if (!range || !bridge || waiting || composing) return;
    if (!from) return command('lines', event.dataTransfer.getData('text/plain'), range);
    waiting = true;
    bridge.Moved(++sent, shown, from[0], from[1],
                 placeOf(range.startContainer, range.startOffset));
  }, true);

  function listen(kind, react) {
    document.addEventListener(kind, event => {
      const index = boxOf(event);
      if (kind === 'submit' || index >= 0 || event.target.closest('a')) {
        event.preventDefault();
        event.stopPropagation();
      }
      if (index >= 0 && bridge) react(index);
    }, true);
  }
  listen('click', index => bridge.Clicked(index));
  listen('dblclick', index => bridge.DoubleClicked(index));
  listen('submit', () => {});
})();
