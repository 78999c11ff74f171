"""Tables of figures, as they stand in a page."""

import statistics


def spread(values, factor, form):
    return (f"{statistics.median(values) * factor:{form}} "
            f"({min(values) * factor:{form}} to {max(values) * factor:{form}})")


def aim_and_result(aim, result, is_reached=lambda aim, result: result <= aim):
    """Two cells; an aim that is reached has its result in bold."""
    if aim is None or result is None:
        return " | "
    return f"{aim:.2f} | {f'**{result:.2f}**' if is_reached(aim, result) else f'{result:.2f}'}"


def print_table(title, head, rows):
    print(f"{title}\n\n{head}\n|{'---|' * (head.count('|') - 1)}")
    for row in rows:
        print(row, flush=True)
    print()
