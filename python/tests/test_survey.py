# Surveys on a Dask cluster against `tresk batch`: the same file with the same options, also when
# a worker process is killed in the middle of the run and when a run cut short is resumed.
import os
import signal
import subprocess

import pytest

import tresk

distributed = pytest.importorskip("dask.distributed")
ROOT = os.path.join(os.path.dirname(__file__), "..", "..")
INPUTS = [os.path.join(ROOT, "tests", "data", "structures"),
          os.path.join(ROOT, "examples", "chains")]
TRESK = os.environ.get("TRESK_BIN",
                       os.path.join(os.path.dirname(tresk.__file__), "..", "..", "tresk"))


def batch(tmp_path, closures):
    out = tmp_path / "batch.tsv"
    subprocess.run([TRESK, "batch", *INPUTS, "-o", out, "-n", str(closures), "-s", "7",
                    "--no-times"], check=True, capture_output=True)
    return out.read_bytes()


def test_local_cluster_writes_what_batch_writes(tmp_path):
    out = tmp_path / "survey.tsv"
    assert tresk.survey(INPUTS, out, closures=5, seed=7, times=False, workers=2) == 7
    assert out.read_bytes() == batch(tmp_path, 5)


def test_killed_worker_and_resumed_run_lose_and_repeat_no_row(tmp_path):
    out = tmp_path / "survey.tsv"
    cluster = distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None)
    with cluster, distributed.Client(cluster) as client:
        def kill_busiest(done, total):
            if done == 1:
                busiest = max(client.processing().items(), key=lambda item: len(item[1]))[0]
                os.kill(client.run(os.getpid)[busiest], signal.SIGKILL)

        tresk.survey(INPUTS, out, client, closures=200, seed=7, times=False, progress=kill_busiest)
        expected = batch(tmp_path, 200)
        assert out.read_bytes() == expected
        cut = expected.index(b"\n", len(expected) // 2) - 3  # a row cut short
        out.write_bytes(expected[:cut])
        assert 0 < tresk.survey(INPUTS, out, client, closures=200, seed=7, times=False) < 7
        assert out.read_bytes() == expected
