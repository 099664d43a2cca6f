#!/usr/bin/env python3
"""Exports the drawings of many scenes as pictures, in jobs that a scheduler can run in any order and on any machine.

usage: export_scenes.py list [--frames N] [--camera NAME] [--lightbox PROGRAM] JOBS OUT SCENE...
       export_scenes.py run JOBS NUMBER
       export_scenes.py check JOBS

list   writes the file JOBS with one job a line: a scene and a range of at most N frames (default: 50). Opens each scene to
       ask for its playback range. A scene's pictures go to OUT/SCENE/SCENE.####.png.
run    runs the job of this line (1 is the first). Its exit status is that of lightbox; its messages are kept in JOBS.d.
check  names the jobs that failed, did not end or did not run, with their first error. The exit status is 1 if there are any.

A job that is started again writes the same pictures again, each whole or not at all. It has preferences of its own, so jobs do
not disturb each other.
"""

import argparse
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile


def mel(text):
    """A MEL string literal."""
    for character, escape in (("\\", "\\\\"), ('"', '\\"'), ("\n", "\\n"), ("\r", "\\r")):
        text = text.replace(character, escape)
    return f'"{text}"'


def batch(program, scene, command, **options):
    """Runs the command on the scene, with preferences that are gone afterwards."""
    with tempfile.TemporaryDirectory(prefix="export_scenes.") as preferences:
        return subprocess.run([program, "-batch", "-prefs", preferences, "-file", scene, "-command", command], check=False,
                              env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, text=True, errors="replace", **options)


def playback_range(program, scene):
    """The first and the last frame that playback shows. Ends the program if the scene cannot be opened."""
    answer = batch(program, scene, 'print(`playbackOptions -q -min` + " " + `playbackOptions -q -max`)', capture_output=True)
    if answer.returncode != 0:
        sys.exit(f"{scene} cannot be opened:\n{answer.stderr.strip()}")
    start, end = (int(float(number)) for number in answer.stdout.split())
    return start, end


def write_whole(path, text):
    part = path.with_name(f".{path.name}.{os.getpid()}.part")
    part.write_text(text, encoding="utf-8")
    os.replace(part, path)


def read_jobs(path):
    return [json.loads(line) for line in path.read_text(encoding="utf-8").splitlines()]


def results_of(jobs):
    return jobs.with_name(jobs.name + ".d")


def list_jobs(arguments):
    if arguments.frames < 1:
        sys.exit("--frames takes 1 or more.")
    program = shutil.which(arguments.lightbox)
    if not program:
        sys.exit(f"There is no program {arguments.lightbox}.")
    program = os.path.abspath(program)
    scenes = {}
    for scene in arguments.scenes:
        other = scenes.setdefault(scene.stem, scene)
        if other != scene:
            sys.exit(f"{other} and {scene} would write the same pictures.")
    jobs = []
    for name, scene in scenes.items():
        start, end = playback_range(program, scene)
        for first in range(start, end + 1, arguments.frames):
            jobs.append({"lightbox": program, "scene": str(scene.resolve()), "camera": arguments.camera, "start": first,
                         "end": min(first + arguments.frames - 1, end),
                         "pictures": str(arguments.out.resolve() / name / f"{name}.####.png")})
    write_whole(arguments.jobs, "".join(json.dumps(job, ensure_ascii=False) + "\n" for job in jobs))
    shutil.rmtree(results_of(arguments.jobs), ignore_errors=True)
    print(len(jobs))


def run_job(arguments):
    jobs = read_jobs(arguments.jobs)
    if not 1 <= arguments.number <= len(jobs):
        sys.exit(f"{arguments.jobs} has the jobs 1 to {len(jobs)}.")
    job = jobs[arguments.number - 1]
    pathlib.Path(job["pictures"]).parent.mkdir(parents=True, exist_ok=True)
    command = f'qmVellixExport -file {mel(job["pictures"])} -startTime {job["start"]} -endTime {job["end"]}'
    if job["camera"]:
        command += f' -camera {mel(job["camera"])}'
    results = results_of(arguments.jobs)
    results.mkdir(exist_ok=True)
    result = results / str(arguments.number)
    write_whole(result, "\nIt was started and did not end.\n")  # not what an earlier run has left
    done = batch(job["lightbox"], job["scene"], command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    write_whole(result, f"{done.returncode}\n{done.stderr}")
    sys.stderr.write(done.stderr)
    sys.exit(done.returncode if done.returncode >= 0 else 128 - done.returncode)


def check_jobs(arguments):
    failed = 0
    for number, job in enumerate(read_jobs(arguments.jobs), 1):
        result = results_of(arguments.jobs) / str(number)
        lines = result.read_text(encoding="utf-8").splitlines() if result.exists() else ["", "It did not run."]
        if lines[0] != "0":
            failed += 1
            reason = next((line for line in lines[1:] if "Error" in line), lines[-1] if lines[1:] else "")
            reason = reason.strip() or f"It ended with status {lines[0]}."
            print(f'{number}: {job["scene"]}, frames {job["start"]} to {job["end"]}: {reason}')
    sys.exit(1 if failed else 0)


def main():
    # What a scheduler ends takes its program and its preferences along.
    signal.signal(signal.SIGTERM, lambda number, _: sys.exit(128 + number))
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    actions = parser.add_subparsers(required=True, metavar="list|run|check")
    action = actions.add_parser("list", help="write the jobs")
    action.add_argument("--frames", type=int, default=50, help="the most frames of a job")
    action.add_argument("--camera", default="", help="default: the active camera of each scene")
    action.add_argument("--lightbox", default="lightbox", help="the program")
    action.add_argument("jobs", type=pathlib.Path)
    action.add_argument("out", type=pathlib.Path)
    action.add_argument("scenes", type=pathlib.Path, nargs="+")
    action.set_defaults(act=list_jobs)
    action = actions.add_parser("run", help="run one job")
    action.add_argument("jobs", type=pathlib.Path)
    action.add_argument("number", type=int)
    action.set_defaults(act=run_job)
    action = actions.add_parser("check", help="name what failed")
    action.add_argument("jobs", type=pathlib.Path)
    action.set_defaults(act=check_jobs)
    arguments = parser.parse_args()
    arguments.act(arguments)


if __name__ == "__main__":
    main()
