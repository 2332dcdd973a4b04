"""FASTA files, as the comparisons of this folder need them."""


def read_fasta(name):
    """Returns the letters, in upper case and with T for U, by the first words of the names."""
    records, parts = {}, []
    with open(name, encoding="latin-1") as file:
        for line in file:
            if line.startswith(">"):
                parts = records.setdefault(line[1:].split()[0], [])
            else:
                parts.append(line.rstrip("\n").upper().replace("U", "T"))
    return {record: "".join(parts) for record, parts in records.items()}
