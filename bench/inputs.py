"""The files that bench/compare.py measures with: made once, kept between runs."""
import itertools
import pathlib
import shutil
import subprocess
import zlib

SMALL_FILES = 96


class Inputs:
    """Paths of the inputs in `folder`; those that need a program that is missing are None."""

    def __init__(self, folder: pathlib.Path, make_reads: pathlib.Path, quick: bool):
        self.folder = folder
        self.make_reads = make_reads
        short, long, self.small_reads = (100_000, 2_000, 500) if quick else (3_000_000, 60_000, 15_000)
        folder.mkdir(parents=True, exist_ok=True)
        self._forget_old(f"{short} {long} {self.small_reads}")
        self.plain = {
            "4 levels": self._reads("novaseq", short),
            "40 levels": self._reads("hiseq", short),
            "long": self._reads("nanopore", long),
        }
        packed = {name: path for name, path in self.plain.items() if name != "long"}
        self.gzip = {name: self._packed(path, ".fastq.gz", ["gzip", "-6", "-c"]) for name, path in packed.items()}
        self.bgzf = {name: self._packed(path, ".bgzf.fastq.gz", ["bgzip", "-@2", "-c"]) for name, path in packed.items()}
        self.small = self._pieces("small", self.small_reads)
        self.tiny = self._pieces("tiny", 1)

    def _forget_old(self, sizes: str) -> None:
        """Inputs of other sizes, or made by an older generator, are made anew."""
        stamp = self.folder / "stamp"
        here = pathlib.Path(__file__).parent
        generator = b"".join((here / name).read_bytes() for name in ("make_reads.cpp", "read_model.cpp"))
        current = f"{sizes} {zlib.crc32(generator):08x}"
        if not stamp.exists() or stamp.read_text() != current:
            shutil.rmtree(self.folder)
            self.folder.mkdir()
            stamp.write_text(current)

    def _finish(self, path: pathlib.Path, write) -> pathlib.Path:
        """A file under its final name is whole."""
        if not path.exists():
            print(f"making {path.name}", flush=True)
            part = path.with_name(path.name + ".tmp")
            write(part)
            part.rename(path)
        return path

    def _reads(self, model: str, reads: int) -> pathlib.Path:
        command = [self.make_reads, model, str(reads), "1"]
        return self._finish(self.folder / f"{model}.fastq",
                            lambda part: subprocess.run([*command, part], check=True))

    def _packed(self, plain: pathlib.Path, ending: str, command: list):
        if shutil.which(command[0]) is None:
            return None

        def write(part):
            with open(part, "wb") as out:
                subprocess.run([*command, plain], stdout=out, check=True)

        return self._finish(plain.with_name(plain.stem + ending), write)

    def _pieces(self, name: str, reads: int) -> pathlib.Path:
        def write(part):
            shutil.rmtree(part, ignore_errors=True)
            part.mkdir()
            with open(self.plain["4 levels"], "rb") as source:
                for number in range(SMALL_FILES):
                    piece = b"".join(itertools.islice(source, 4 * reads))
                    (part / f"sample_{number:02}.fastq").write_bytes(piece)

        return self._finish(self.folder / name, write)
