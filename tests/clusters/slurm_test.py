# The same rows as a job array of Slurm, on a cluster of one node that the test starts.
# SPDX-License-Identifier: MIT

import os
import socket
import subprocess
import time
import unittest

from farm import PATIENCE, RECIPES, FarmTest, needs


def free_ports(count):
    sockets = [socket.socket() for _ in range(count)]
    for one in sockets:
        one.bind(("127.0.0.1", 0))
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


class Cluster:
    """Daemons on the loopback with folders of their own."""

    def __init__(self, folder):
        self.folder = folder
        self.daemons = []
        folder.chmod(0o711)  # others reach the socket through it, if they know its name
        for name in ("state", "spool", "run"):
            (folder / name).mkdir()
        (folder / "run").chmod(0o755)
        key = folder / "munge.key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o400)
        os.environ["PATH"] += ":/usr/sbin"
        os.environ["SLURM_CONF"] = str(folder / "slurm.conf")

    def start(self):
        host = socket.gethostname().split(".")[0]
        control, node = free_ports(2)
        run = self.folder / "run"
        user = subprocess.run(["id", "-un"], capture_output=True, text=True).stdout.strip()
        (self.folder / "slurm.conf").write_text(
            f"""ClusterName=farm
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={control}
SlurmdPort={node}
AuthType=auth/munge
AuthInfo=socket={run}/munge.socket
CredType=cred/munge
SlurmUser={user}
SlurmdUser={user}
StateSaveLocation={self.folder}/state
SlurmdSpoolDir={self.folder}/spool
SlurmctldPidFile={run}/slurmctld.pid
SlurmdPidFile={run}/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
JobAcctGatherType=jobacct_gather/none
MpiDefault=none
ReturnToService=2
MaxArraySize=101
SchedulerParameters=batch_sched_delay=0,sched_interval=1,sched_min_interval=1000,bf_interval=1
NodeName=farm1 NodeHostname={host} NodeAddr=127.0.0.1 CPUs=2 RealMemory=4000
PartitionName=farm Nodes=farm1 Default=YES MaxTime=INFINITE State=UP
"""
        )
        self.launch(
            "munged", "--foreground", f"--key-file={self.folder}/munge.key", f"--socket={run}/munge.socket",
            f"--pid-file={run}/munged.pid", f"--log-file={run}/munged.log", f"--seed-file={run}/munge.seed",
        )  # fmt: skip
        self.await_that(lambda: (run / "munge.socket").exists())
        self.launch("slurmctld", "-D", "-c")
        self.launch("slurmd", "-D", "-N", "farm1")
        self.await_that(lambda: "idle" in self.tell("sinfo", "--noheader", "--format=%t"))

    def launch(self, *command):
        log = open(self.folder / f"{command[0]}.out", "wb")
        self.daemons.append(subprocess.Popen(command, stdout=log, stderr=log, stdin=subprocess.DEVNULL))
        log.close()

    def tell(self, *command):
        return subprocess.run(command, capture_output=True, text=True).stdout

    def await_that(self, holds):
        end = time.monotonic() + PATIENCE
        while not holds():
            if time.monotonic() > end or any(daemon.poll() is not None for daemon in self.daemons):
                raise unittest.SkipTest("the daemons of Slurm cannot run here: " + self.complaints())
            time.sleep(0.1)

    def complaints(self):
        lines = [
            line
            for file in sorted(self.folder.glob("*.out"))
            for line in file.read_text(errors="replace").splitlines()
            if "rror" in line or "fatal" in line
        ]
        return lines[-1] if lines else "they do not answer"

    def stop(self):
        for daemon in reversed(self.daemons):
            daemon.terminate()
        for daemon in reversed(self.daemons):
            try:
                daemon.wait(30)
            except subprocess.TimeoutExpired:
                daemon.kill()
                daemon.wait()


class JobArray(FarmTest):
    @classmethod
    @needs("sbatch", "slurmctld", "slurmd", "munged")
    def setUpClass(cls):
        super().setUpClass()
        cls.folder.chmod(0o711)
        place = cls.folder / "cluster"
        place.mkdir()
        cls.cluster = Cluster(place)
        cls.addClassCleanup(cls.cluster.stop)
        cls.cluster.start()

    def submit(self, settings, *more):
        return self.run_well(RECIPES / "slurm/submit.sh", settings, "--mem=1000", *more).stdout.strip()

    def await_end_of_all(self):
        end = time.monotonic() + PATIENCE
        while True:
            listed = self.run_program("squeue", "--noheader", "--format=%i %r")
            if listed.returncode == 0 and not listed.stdout:
                return
            self.assertLess(time.monotonic(), end, listed.stdout + listed.stderr)
            time.sleep(0.2)

    def test_makes_the_files_of_a_batch(self):
        settings = self.make_job("array")
        self.submit(settings)
        self.await_end_of_all()
        self.expect_files_of_a_batch(settings)
        self.assertRegex((settings.parent / "logs/summary.txt").read_text(), r"done +5\n")
        self.assertEqual(len(list((settings.parent / "logs").glob("slurm-*_*.out"))), 3)

    def test_goes_on_when_a_task_was_put_back(self):
        settings = self.make_job("requeued", chunk=5)
        job = self.submit(settings)
        end = time.monotonic() + PATIENCE
        while not list((settings.parent / "saved").rglob("*.dsf")) and time.monotonic() < end:
            time.sleep(0.02)
        self.run_program("scontrol", "requeue", f"{job}_1")
        # The node is given two minutes to clear the first try away, which is more than is needed here.
        while "BeginTime" not in self.cluster.tell("squeue", "--noheader", "--format=%r"):
            self.assertLess(time.monotonic(), end)
            time.sleep(0.1)
        self.run_program("scontrol", "update", f"JobId={job}_1", "StartTime=now+10")
        self.await_end_of_all()
        self.expect_files_of_a_batch(settings)

    def test_is_refused_when_there_are_too_many_chunks(self):
        settings = self.make_job("long", chunk=1)
        rows = ["source,name"] + [f"/none.duf,N{number}" for number in range(101)]
        (settings.parent / "jobs.csv").write_text("\n".join(rows) + "\n")
        refused = self.run_program(RECIPES / "slurm/submit.sh", settings)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("101 chunks are more than an array takes, which is 100; make chunk larger", refused.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
