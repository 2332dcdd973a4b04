# What is made of a report: tracks, catalogues, statistics and the page.


rule convert:
    input:
        os.path.join(FOLDER, "{genome}.report"),
    output:
        os.path.join(FOLDER, "{genome}{track}"),
    log:
        os.path.join(LOGS, "convert{track}.log"),
    params:
        format=lambda wildcards: settings.format_of(settings.TRACKS, wildcards.track),
        window=lambda wildcards: (["--window", config["bedgraph_window"]] if wildcards.track == ".bedgraph" else []),
        filters=settings.words(config["filters"]),
    resources:
        mem_mb=lambda wildcards, attempt: 500 * attempt,
        runtime=reading_minutes,
    shell:
        "{PROGRAM:q} convert --to {params.format} {params.window} {params.filters:q}"
        " -o {output:q} {input:q} 2>{log:q}"


rule statistics:
    input:
        os.path.join(FOLDER, "{genome}.report"),
    output:
        report(os.path.join(FOLDER, "{genome}{statistics}"), category="Statistics", labels={"genome": "{genome}"}),
    log:
        os.path.join(LOGS, "statistics{statistics}.log"),
    params:
        format=lambda wildcards: settings.format_of(settings.STATISTICS, wildcards.statistics),
        filters=settings.words(config["filters"]),
    resources:
        mem_mb=lambda wildcards, attempt: 500 * attempt,
        runtime=reading_minutes,
    shell:
        "{PROGRAM:q} stats --to {params.format} {params.filters:q} -o {output:q} {input:q} 2>{log:q}"


rule page:
    input:
        os.path.join(FOLDER, "{genome}.report"),
    output:
        report(os.path.join(FOLDER, "{genome}.html"), category="Pages", labels={"genome": "{genome}"}),
    log:
        os.path.join(LOGS, "page.log"),
    params:
        filters=settings.words(config["filters"]),
    resources:
        mem_mb=lambda wildcards, attempt: 1000 * attempt,
        runtime=reading_minutes,
    shell:
        "{PROGRAM:q} html {params.filters:q} -o {output:q} {input:q} 2>{log:q}"
