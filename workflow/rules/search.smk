# The search of a range, and the merge of all.

PARTS = {"report": temp(os.path.join(WORK, "{number}.report"))}
if config["masked"]:
    PARTS["masked"] = temp(os.path.join(WORK, "{number}.masked"))


rule search:
    input:
        text=text_of,
        table=os.path.join(WORK, "ranges.tsv"),
    output:
        **PARTS,
    log:
        os.path.join(LOGS, "search-{number}.log"),
    params:
        name=lambda wildcards: os.path.basename(GENOMES[wildcards.genome]),
        options=config["options"],
        masked=lambda wildcards, output: ["--masked", output.masked] if config["masked"] else [],
    threads: config["threads"]
    resources:
        mem_mb=search_memory,
        runtime=search_minutes,
    shell:
        "{PYTHON:q} -B {SCRIPTS:q}/search_range.py --program {PROGRAM:q} --text {input.text:q}"
        " --name={params.name:q} --table {input.table:q} --number {wildcards.number} --threads {threads}"
        " --options={params.options:q} --report {output.report:q} {params.masked:q} 2>{log:q}"


# In the folder of the result, since the head of a report has the name of the output as it was given. What killed
# jobs have left goes as well.
rule merge:
    input:
        parts_of(".report"),
    output:
        os.path.join(FOLDER, "{genome}.report"),
    log:
        os.path.join(LOGS, "merge.log"),
    params:
        folder=FOLDER,
        parts=lambda wildcards, input: [os.path.join("work", os.path.basename(part)) for part in input],
    resources:
        mem_mb=lambda wildcards, attempt: 200 * attempt,
        runtime=reading_minutes,
    shell:
        "(cd -- {params.folder:q} && {PROGRAM:q} merge -o {wildcards.genome:q}.report {params.parts:q}"
        " && rm -rf work/.[0-9]*) 2>{log:q}"


rule merge_masked:
    input:
        parts=parts_of(".masked"),
        report=os.path.join(FOLDER, "{genome}.report"),
    output:
        os.path.join(FOLDER, "{genome}.masked.fa"),
    log:
        os.path.join(LOGS, "merge_masked.log"),
    resources:
        mem_mb=lambda wildcards, attempt: 200 * attempt,
        runtime=reading_minutes,
    shell:
        "{PROGRAM:q} merge --masked --report {input.report:q} -o {output:q} {input.parts:q} 2>{log:q}"
