'use strict';

// Sorting, searching and filtering. Everything that is shown stands in the page already.
(() => {
    const table = document.querySelector('table');
    const rows = [...table.tBodies];
    const form = document.querySelector('form');
    const search = form.querySelector('[type=search]');
    const filters = [...form.querySelectorAll('[type=checkbox]')];
    const openAll = form.querySelector('#open');
    const headers = [...table.tHead.querySelectorAll('th')];
    const collator = new Intl.Collator(undefined, { numeric: true });
    const texts = new Map();

    const cellText = (row, column) => {
        const cell = column < 7 ? row.rows[0].cells[column] : row.querySelector('summary');
        return cell.textContent;
    };

    // What a column is sorted by: numbers, times and texts each by their own order.
    const verdicts = filters.map((filter) => filter.value);
    const numberIn = (text) => (text === '' ? -1 : Number(text.replaceAll(',', '')));
    const timeIn = (text) => Date.parse(text.replace(' ', 'T')) || 0;
    const keys = {
        Verdict: (row) => verdicts.indexOf(row.className),
        Injected: (row) => timeIn(cellText(row, 3)),
        Points: (row) => numberIn(cellText(row, 4)),
        Peaks: (row) => numberIn(cellText(row, 5)),
    };

    const sortBy = (column) => {
        const header = headers[column];
        const isDescending = header.getAttribute('aria-sort') === 'ascending';
        const key = keys[header.textContent] || ((row) => cellText(row, column));
        const compare = keys[header.textContent] ? (a, b) => a - b : collator.compare;
        const keyed = rows.map((row) => [key(row), row]);
        keyed.sort((a, b) => (isDescending ? compare(b[0], a[0]) : compare(a[0], b[0])));
        for (const each of headers) {
            if (each.hasAttribute('aria-sort')) {
                each.setAttribute('aria-sort', 'none');
            }
        }
        header.setAttribute('aria-sort', isDescending ? 'descending' : 'ascending');
        table.append(...keyed.map((each) => each[1]));
    };

    const textOf = (row) => {
        if (!texts.has(row)) {
            texts.set(row, row.textContent.toLowerCase().replaceAll('\u00a0', ' '));
        }
        return texts.get(row);
    };

    const show = () => {
        const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
        const shown = new Set(filters.filter((filter) => filter.checked).map((filter) => filter.value));
        let count = 0;
        for (const row of rows) {
            const isShown = shown.has(row.className) && words.every((word) => textOf(row).includes(word));
            row.hidden = !isShown;
            count += isShown ? 1 : 0;
        }
        const number = (value) => value.toLocaleString('en-US');
        form.querySelector('output').textContent = `${number(count)} of ${number(rows.length)} files shown`;
    };

    // Puts the names of peaks where the peaks are; those that would cover another one stay below.
    const placeNames = (chart) => {
        const room = 1400 / chart.clientWidth; // percent of the width for a line of 14 pixels
        const below = chart.nextElementSibling;
        const [from, to] = [Number(chart.dataset.from), Number(chart.dataset.to)];
        const list = document.createElement('ol');
        const others = [];
        let free = 0;
        let longest = 0;
        for (const label of below.textContent.slice('Peaks: '.length).split(',\n')) {
            const time = label.slice(label.lastIndexOf('\u00a0') + 1);
            const place = (100 * (Number(time) - from)) / (to - from);
            if (place >= free && place <= 100) {
                const item = document.createElement('li');
                item.textContent = label;
                item.style.left = `${place}%`;
                list.append(item);
                free = place + room;
                longest = Math.max(longest, label.length);
            } else {
                others.push(label);
            }
        }
        chart.style.setProperty('--names', longest);
        chart.append(list);
        below.textContent = others.length ? `Further peaks: ${others.join(', ')}` : '';
    };

    headers.forEach((header, column) => {
        if (header.textContent !== 'Chromatogram') {
            const button = document.createElement('button');
            button.type = 'button';
            button.textContent = header.textContent;
            button.addEventListener('click', () => sortBy(column));
            header.replaceChildren(button);
            header.setAttribute('aria-sort', 'none');
        }
    });
    table.addEventListener('click', (event) => {
        const row = event.target.closest('tbody tr:first-child');
        if (row && getSelection().isCollapsed) {
            const details = row.parentElement.querySelector('details');
            details.open = !details.open;
        }
    });
    table.addEventListener('toggle', (event) => {
        for (const chart of event.target.querySelectorAll('.chart[data-to]:has(+ p)')) {
            placeNames(chart);
            delete chart.dataset.to;
        }
    }, true);
    openAll.addEventListener('click', () => {
        const details = rows.filter((row) => !row.hidden).map((row) => row.querySelector('details'));
        const isToOpen = details.some((each) => !each.open);
        details.forEach((each) => {
            each.open = isToOpen;
        });
        openAll.textContent = isToOpen ? 'Close all shown' : 'Open all shown';
    });
    let waiting = 0;
    search.addEventListener('input', () => {
        clearTimeout(waiting);
        waiting = setTimeout(show, 100);
    });
    form.addEventListener('change', show);
    form.addEventListener('submit', (event) => {
        event.preventDefault();
        show();
    });
    show();
    form.hidden = false;
})();
