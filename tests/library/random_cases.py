"""Random records and settings, for comparisons with the program."""

MODES = ["exact", "extendExact", "imperfect"]
CHOICES = {
    "minUnitLen": ["0", "1", "2", "5"], "maxUnitLen": ["1", "4", "6", "12", "30"],
    "minScore": ["-5", "0", "2", "4", "8"], "minScore_a": ["-4", "2"],
    "minScore_b": ["0", "0.1", "0.5", "1.5"], "minLength": ["0", "2", "12"],
    "minLength_a": ["-3", "4"], "minLength_b": ["0.1", "1", "2.5"],
    "mismatchScore": ["-2", "-3", "-8", "-1"], "indelScore": ["-2", "-4", "-9", "-1"],
    "recursion": ["1", "3", "4", "0"], "maximum_score_reduction": ["0", "5", "20", "2147483647"],
    "succN": ["-1", "0", "1", "7"], "NPerfectionMode": ["0", "1", "2"],
    "reportUnit": ["0", "1", "2"],
}
SWITCHES = ["NsAsMissense", "dontRemoveMostlyOverlapping"]


def random_letters(draw, length):
    return "".join(draw.choices("ACGTN", [5, 5, 5, 5, draw.choice([0, 0, 1])], k=length))


def random_array(draw):
    unit = random_letters(draw, draw.randint(1, draw.choice([3, 8, 25])))
    array = list(unit * draw.randint(2, 30))[:400]
    for _ in range(draw.choice([0, 0, 1, 3, len(array) // 8])):
        place = draw.randrange(len(array))
        array[place] = draw.choice(["", "A", "C", "G", "T", "N", "AC", "NNN"])
    return "".join(array)


def random_record(draw):
    """Up to some thousand letters in either case, with U and ambiguity codes."""
    pieces = [random_array(draw) if draw.random() < 0.5 else random_letters(draw, draw.randint(0, 60))
              for _ in range(draw.choice([0, 1, 5, 12]))]
    bases = "".join(pieces)
    if draw.random() < 0.2:
        bases = bases.replace("T", "u").replace("N", "R")
    return bases.lower() if draw.random() < 0.3 else bases


def random_settings(draw):
    drawn = {name: draw.choice(values) for name, values in CHOICES.items() if draw.random() < 0.3}
    # A refusal is a case as well, but not every second one.
    for name, refused in [("mismatchScore", "-1"), ("indelScore", "-1"), ("recursion", "0")]:
        if drawn.get(name) == refused and draw.random() < 0.8:
            del drawn[name]
    switches = [name for name in SWITCHES if draw.random() < 0.25]
    return drawn, switches


def program_options(drawn, switches):
    """The arguments of the program for settings as random_settings draws them."""
    options = [word for name, value in drawn.items() for word in (f"--{name}", value)]
    return options + [f"--{name}" for name in switches]


def fasta_of(records):
    return "".join(f">record {i}\n{bases}\n" for i, bases in enumerate(records))
