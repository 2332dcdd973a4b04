# Which records each job searches.


rule unpack:
    input:
        lambda wildcards: GENOMES[wildcards.genome],
    output:
        temp(os.path.join(WORK, "text.fa")),
    log:
        os.path.join(LOGS, "unpack.log"),
    resources:
        mem_mb=lambda wildcards, attempt: 200 * attempt,
        runtime=reading_minutes,
    shell:
        "{PYTHON:q} -B {SCRIPTS:q}/unpack.py {input:q} {output:q} 2>{log:q}"


rule ranges:
    input:
        text_of,
    output:
        table=os.path.join(WORK, "ranges.tsv"),
    log:
        os.path.join(LOGS, "ranges.log"),
    params:
        max_ranges=config["ranges"],
        min_bases=config["min_range_bases"],
    resources:
        mem_mb=lambda wildcards, attempt: 500 * attempt,
        runtime=reading_minutes,
    shell:
        "{PYTHON:q} -B {SCRIPTS:q}/count_records.py --text {input:q} --max-ranges {params.max_ranges}"
        " --min-bases {params.min_bases} --table {output.table:q} 2>{log:q}"


# Which jobs search is known once the ranges are. A genome that is one range needs no such check, and then Snakemake
# can put its jobs into groups. An unpacked genome is an input, so that it stays until those jobs are known.
checkpoint divided:
    input:
        os.path.join(WORK, "ranges.tsv"),
        text_of,
    output:
        touch(os.path.join(WORK, "divided")),


localrules:
    divided,
