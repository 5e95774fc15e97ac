"""Stands where the analysis would, and becomes it when the file "go" appears: held_analysis.py ANALYSER SCRIPT PAYLOAD

Until then it reports its progress as an analysis does, a little further each time, so that a test sees a job that
runs for as long as it likes. "go" and the launcher that starts this stand in the folder of SCRIPT's home, which
the launcher names in GENOSTAT_HELD.
"""
import base64
import json
import os
import pathlib
import sys
import time

analyser, script, payload = sys.argv[1:]
home = pathlib.Path(os.environ["GENOSTAT_HELD"])
job = json.loads(base64.b64decode(payload))["fastq_data"][0]
result = pathlib.Path(job["CSV_Path"])
progress = pathlib.Path(str(result) + ".progress")
names = [pathlib.Path(file).name.split(".")[0] for file in job.get("files", [])] or ["s1", "s2", "s3"]
size = 50_000_000
begin = time.monotonic()
while not (home / "go").exists():
    seconds = time.monotonic() - begin
    done = min(int(seconds * 1e6) + 1_000_000, size - 1)
    running = [{"name": name, "bytes": done, "size": size, "reads": done // 250} for name in names]
    state = {"format": "genostat-progress", "version": 1, "samples": len(names), "finished": 0,
             "bytesDone": done * len(names), "bytesTotal": size * len(names),
             "readsDone": done // 250 * len(names), "seconds": round(seconds, 3), "running": running}
    part = result.with_name(f"{os.uname().nodename}-{os.getpid()}-0.genostat-part")
    part.write_text(json.dumps(state, separators=(",", ":")) + "\n", encoding="utf-8")
    part.replace(progress)
    time.sleep(0.1)
progress.unlink(missing_ok=True)
os.execv(analyser, [analyser, script, payload])
