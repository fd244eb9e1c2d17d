import os

class MoveJournal:
    def __init__(self, name, start, target):  # "run.txt", (0, 0), (45, 90)
        self.file = open(name, "w")
        self.plan = f"from {start[0]},{start[1]} to {target[0]},{target[1]}"

    def write(self, when, move):  # when: "before" or "after"; if this raises, do not start the move
        self.file.write(f"{when} {move} {self.plan};\n")
        self.file.flush()
        os.fsync(self.file.fileno())
