"""Whether MultiQC finds every sample and every module in the folder that the analyser writes for it.

usage: multiqc_check.py ANALYSER EXAMPLES; ends with 77 where there is no multiqc.
"""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

MODULES = """basic_statistics per_base_sequence_quality per_tile_sequence_quality per_sequence_quality_scores
    per_base_sequence_content per_sequence_gc_content per_base_n_content sequence_length_distribution
    sequence_duplication_levels overrepresented_sequences adapter_content""".split()

# File names, and what MultiQC makes of them.
HOSTILE = {
    "a b, 'c' \"d\" %20 [x].fastq": "a b, 'c' \"d\" %20 [x]",
    "pr\u00f8ve\u2028\u6761.fastq": "pr\u00f8ve \u6761",
    "tab\tand\nline.fastq": "tab and line",
    "<i>&amp;.fastq": "<i>&amp;",
    "x" * 249 + ".fastq": "x" * 249,
    # In byte order; some systems do not distinguish them.
    "Treated.fastq": "Treated",
    "treated.fastq": "treated.2",
}


def main(analyser, examples):
    multiqc = shutil.which("multiqc")
    if multiqc is None:
        print("NOT CHECKED: there is no multiqc; scripts/setup test installs it")
        return 77
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        reads, again = folder / "reads", folder / "again"
        reads.mkdir()
        again.mkdir()
        source = (pathlib.Path(examples) / "control.fastq").read_bytes()
        for file in HOSTILE:
            (reads / file).write_bytes(source)
        (again / "control_1.fastq").write_bytes(source)
        cohort = pathlib.Path(examples) / "cohort"
        subprocess.run([analyser, "qc", cohort, reads, again, "--csv", folder / "qc.csv", "--fastqc-data", folder / "data"],
                       check=True)
        subprocess.run([multiqc, "--quiet", "--module", "fastqc", "--outdir", folder / "report", folder / "data"],
                       check=True)
        document = json.loads((folder / "report" / "multiqc_data" / "multiqc_data.json").read_text(encoding="utf-8"))
        samples = document["report_saved_raw_data"]["multiqc_fastqc"]
        plots = document["report_plot_data"].keys()
    # Two files are called control_1: their folders tell them apart.
    expected = {file.name.removesuffix(".fastq.gz") for file in cohort.iterdir()} - {"control_1"} | set(HOSTILE.values())
    expected |= {"cohort_control_1", "again_control_1"}
    assert samples.keys() == expected, samples.keys() ^ expected
    verdicts = {"pass", "warn", "fail"}
    for sample, values in samples.items():
        missing = [module for module in MODULES if values.get(module) not in verdicts]
        assert not missing, (sample, missing)
        assert values["Total Sequences"] >= 250, (sample, values)
    for plot in ["per_base_sequence_quality", "per_sequence_gc_content", "sequence_duplication_levels", "adapter_content"]:
        assert any(plot in name for name in plots), (plot, plots)
    return 0


sys.exit(main(*sys.argv[1:]))
