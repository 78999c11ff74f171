"""The page of a batch as a reader has it, in a headless Chromium.

page_test.py KORLIT SAMPLES [--large]: with --large, how long a page of 20,000 files takes to open.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from chromium import Chromium

korlit, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
hostile = "<script>alert(1)</script><img src=x onerror=alert(2)>\"'&amp;"
names = ["Ångström 10", "ångström 9", "blank", "Zeta", "", hostile]


def file_record(number, count):
    """One of `count` files: every fifth has failed, and those that haven't are verified in turns."""
    path = f"/archive/{'sub' if number % 2 else 'other'}/run{number}.cdf"
    record = {"record": "file", "batch": "b", "time": "2026-01-02T03:04:05+01:00", "kind": "andi",
              "result": "failed" if number % 5 == 0 else "converted", "message": f"Message {number}",
              "sources": [{"path": path, "size": 1234, "sha256": f"{number:064x}"}],
              "outputs": [{"path": path.replace(".cdf", ending), "size": 99, "sha256": f"{count + number:064x}"}
                          for ending in (".sli", ".rpt")],
              "verdict": [None, {"words": "same data", "same": True, "unexpected": [], "expected": [
                  {"rule": "area", "words": "areas are divided", "count": 1200}]},
                  {"words": "not the same", "same": False, "expected": [],
                   "unexpected": ["sample 17"]}][number % 3] if number % 5 else None,
              "losses": [hostile], "warnings": ["a warning"] if number == 7 else [],
              "sample": names[number % len(names)], "operator": "A. Lindqvist",
              "injection_date": f"2005-10-{number % 28 + 1:02}T08:34:37+0{number % 3}:00", "channels": []}
    if number % 5:
        record["channels"] = [{
            "channel": 0, "detector_unit": hostile[:20], "points": (number * 7919) % 10007, "start_min": 0,
            "end_min": 10, "minimum": 0, "maximum": 99.5,
            "peaks": [{"name": "early", "time_min": 1}, {"name": hostile, "time_min": 5},
                      {"name": "close", "time_min": 5.001}, {"name": "untimed", "time_min": None}],
            "outline": [-1, -1] + [value for i in range(149) for value in (i, (i * number) % 250)]}]
    return record


def write_page(folder, count):
    batch = {"record": "batch", "batch": "b", "time": "2026-01-02T03:04:05+01:00", "korlit": "0.1.0",
             "machine": "bench", "folder": "/archive", "arguments": ["convert", hostile], "files": count + 1}
    records = [batch] + [file_record(number, count) for number in range(count)]
    (folder / "manifest.jsonl").write_text("".join(json.dumps(record) + "\n" for record in records) + '{"rec')
    page = folder / f"page{count}.html"
    subprocess.run([korlit, "report", folder / "manifest.jsonl", "-o", page], check=True,
                   stderr=subprocess.DEVNULL)
    return page


def column(browser, number):
    return browser.value(f"""[...document.querySelectorAll('tbody')].filter((row) => !row.hidden).map((row) =>
        row.querySelectorAll('td')[{number}].textContent)""")


def search_for(browser, text, answer):
    """The answer before is taken away first, so that what is waited for is the one to this text."""
    browser.value("document.querySelector('output').textContent = ''")
    browser.value("document.querySelector('[type=search]').select()")
    browser.call("Input.insertText", text=text)
    browser.wait_for("document.querySelector('output').textContent")
    assert browser.value("document.querySelector('output').textContent") == answer, text


def open_row(browser, number):
    """Opens a row, and waits until the names of its peaks stand in the chart."""
    browser.click(f"tbody:nth-of-type({number}) summary")
    browser.wait_for(f"document.querySelector('tbody:nth-of-type({number}) .chart ol') !== null")


def test_rows(browser, page):
    browser.open(page)
    for words in ("30 files", "6 Failed", "8 Different data", "8 Not compared", "8 Same data",
                  "30 of its 31 files: it was interrupted", "line 32 is cut"):
        assert words in browser.value("document.querySelector('header').textContent"), words
    assert browser.value("document.querySelector('output').textContent") == "30 of 30 files shown"
    points = column(browser, 4)
    assert points.count("") == 6 and "7,919" in points

    sort = "th:nth-child(%d) button"
    states = "[...document.querySelectorAll('th')].map((th) => th.getAttribute('aria-sort'))"
    browser.click(sort % 5)
    numbers = [int(text.replace(",", "") or -1) for text in column(browser, 4)]
    assert numbers == sorted(numbers), numbers
    assert browser.value(states) == ["none"] * 4 + ["ascending", "none", None, "none"]
    browser.press_enter()
    numbers = [int(text.replace(",", "") or -1) for text in column(browser, 4)]
    assert numbers == sorted(numbers, reverse=True), numbers
    assert browser.value(states)[4] == "descending"
    browser.click(sort % 2)
    shown = list(dict.fromkeys(column(browser, 1)))
    assert shown == ["", hostile, "ångström 9", "Ångström 10", "blank", "Zeta"], shown
    browser.click(sort % 1)
    assert list(dict.fromkeys(column(browser, 0))) == ["Failed", "Different data", "Not compared", "Same data"]
    browser.click(sort % 8)
    assert column(browser, 7)[0].startswith("other/run0.cdf") and column(browser, 7)[1].startswith("other/run2.")
    browser.click(sort % 4)
    stamps = browser.value("[...document.querySelectorAll('tbody')].map((row) => "
                           "Date.parse(row.rows[0].cells[3].textContent.replace(' ', 'T')))")
    assert stamps == sorted(stamps)


def test_search_and_filters(browser, page):
    browser.open(page)
    for text, count in (("a WARNING", 1), (f"{37:064x}", 1), ("early 1.000", 24), ("sub/ zeta", 5),
                        ("onerror=alert(2)", 30), ("nowhere", 0), ("", 30)):
        search_for(browser, text, f"{count} of 30 files shown")
    browser.click("[value=failed]")
    assert "Failed" not in column(browser, 0) and len(column(browser, 0)) == 24
    search_for(browser, "run12.cdf", "1 of 30 files shown")
    search_for(browser, "run10.cdf", "0 of 30 files shown")


def test_a_row_opens(browser, page):
    browser.open(page)
    chart = "document.querySelector('tbody:nth-of-type(8) .chart svg')"
    assert not browser.value(f"{chart}.checkVisibility()")
    open_row(browser, 8)
    assert browser.value("document.activeElement.tagName") == "SUMMARY"
    assert browser.value(f"{chart}.getBoundingClientRect().height") > 100
    text = browser.value("document.querySelector('tbody:nth-of-type(8)').innerText")
    for words in ("areas are divided (1,200)", "a warning", f"{7:064x}  /archive/sub/run7.cdf", hostile,
                  "Further peaks: close\u00a05.001, untimed\u00a0?", "Message 7"):
        assert words in text, words
    assert browser.value("""[...document.querySelectorAll('tbody:nth-of-type(8) .chart li')].map((item) =>
        [item.textContent, item.style.left])""") == [["early\u00a01.000", "10%"], [f"{hostile}\u00a05.000", "50%"]]
    browser.press_enter()
    browser.wait_for(f"!{chart}.checkVisibility()")
    browser.click("tbody:nth-of-type(8) td:nth-child(2)")
    assert browser.value("document.querySelector('tbody:nth-of-type(8) details').open")
    browser.click("#open")
    assert browser.value("document.querySelectorAll('tbody details[open]').length") == 30


def test_texts_stay_texts(browser, page):
    browser.open(page)
    browser.click("#open")
    assert browser.value("[document.scripts.length, document.images.length]") == [1, 0]
    assert browser.messages == [f"file://{page}"], browser.messages


def test_without_scripts(browser, page):
    browser.open(page, scripts=False)
    assert browser.value("document.querySelector('form').offsetHeight") == 0
    assert browser.value("document.querySelectorAll('button:not(form *)').length") == 0
    assert len(column(browser, 0)) == 30
    browser.click("tbody:nth-of-type(8) summary")
    text = browser.value("document.querySelector('tbody:nth-of-type(8)').innerText")
    for words in ("Peaks: early\u00a01.000, ", "a warning", f"{7:064x}"):
        assert words in text, words


def test_widths_and_colours(browser, page):
    colours = set()
    for width, scheme in ((1280, "light"), (400, "light"), (1280, "dark"), (400, "dark")):
        browser.open(page, width=width, scheme=scheme)
        open_row(browser, 8)
        assert browser.value("document.documentElement.scrollWidth") <= width
        colours.add(browser.value("getComputedStyle(document.body).backgroundColor"))
        browser.screenshot(page.parent / f"{width}-{scheme}.png")
    assert len(colours) == 2


def test_page_of_a_batch(browser, folder):
    page = folder / "batch.html"
    subprocess.run([korlit, "convert", samples, "--to", "andi", "-d", folder, "--report", page], check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    browser.open(page)
    assert sorted(column(browser, 7)) != [] and column(browser, 0) == ["Not compared"] * 2
    assert sorted(column(browser, 1)) == ["Alkanes C6-C14", "Herbal extract 7"]
    assert browser.messages == [f"file://{page}"], browser.messages


def measure(browser, folder):
    page = write_page(folder, 20000)
    start = time.time()
    browser.open(page)
    loaded = time.time()
    browser.click("th:nth-child(5) button")
    browser.value("document.body.offsetHeight")
    print(f"20,000 files: {page.stat().st_size / 1e6:.0f} MB, opened in {loaded - start:.1f} s, "
          f"sorted in {time.time() - loaded:.1f} s")
    assert page.stat().st_size < 80e6


shots = pathlib.Path(os.environ.get("SCREENSHOTS", tempfile.mkdtemp())).resolve()
small = write_page(shots, 30)
with Chromium() as chromium:
    if "--large" in sys.argv:
        measure(chromium, shots)
    else:
        for test in (test_rows, test_search_and_filters, test_a_row_opens, test_texts_stay_texts,
                     test_without_scripts, test_widths_and_colours):
            test(chromium, small)
            print(f"{test.__name__}: passed")
        test_page_of_a_batch(chromium, shots)
        print("test_page_of_a_batch: passed")
print(f"screenshots and pages: {shots}")
