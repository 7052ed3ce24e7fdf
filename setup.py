# Builds the Python module tresk with CMake (host only; no tests, benchmarks or command) and
# packages it with libtresk and libchainprep beside it (found through the rpath $ORIGIN).
import glob
import os
import shutil
import subprocess
import sys

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py

ROOT = os.path.dirname(os.path.abspath(__file__))


class CompiledDistribution(Distribution):
    def has_ext_modules(self):  # a platform wheel: the package holds compiled libraries
        return True


class BuildWithCMake(build_py):
    def run(self):
        super().run()
        build = os.path.join(ROOT, "build", "pip")
        if shutil.which("cmake") is None:
            sys.exit("tresk: cmake is needed to build the module (tools/install-deps.sh)")
        subprocess.check_call([
            "cmake", "-S", ROOT, "-B", build, "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
            "-DTRESK_ENABLE_CUDA=OFF", "-DTRESK_BUILD_TESTS=OFF", "-DTRESK_BUILD_BENCH=OFF",
            "-DTRESK_BUILD_CLI=OFF", "-DTRESK_BUILD_PYTHON=ON",
            "-DPython3_EXECUTABLE=" + sys.executable,
            "-DCMAKE_BUILD_WITH_INSTALL_RPATH=ON", "-DCMAKE_INSTALL_RPATH=$ORIGIN"])
        subprocess.check_call(["cmake", "--build", build, "-j", str(os.cpu_count() or 2),
                               "--target", "tresk_python"])
        modules = glob.glob(os.path.join(build, "python", "tresk", "_tresk*.so"))
        if not modules:
            sys.exit("tresk: the module was not built (are pybind11-dev and python3-numpy there?)")
        target = os.path.join(self.build_lib, "tresk")
        os.makedirs(target, exist_ok=True)
        for path in modules + [os.path.join(build, name)
                               for name in ("libtresk.so.0", "libchainprep.so.0")]:
            shutil.copy(path, os.path.join(target, os.path.basename(path)))  # the file, not a link


setup(packages=["tresk"], package_dir={"": "python"}, distclass=CompiledDistribution,
      cmdclass={"build_py": BuildWithCMake})
