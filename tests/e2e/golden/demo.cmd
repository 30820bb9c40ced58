# The main job.
demo
