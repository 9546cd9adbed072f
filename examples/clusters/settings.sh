# What every task of a farm is to know; for rows.sh. Paths are as seen from the folder of this file.
table=jobs.csv  # beside it lies what is done
logs=logs       # a file for each task
chunk=50        # rows a task: so many that a task lasts some minutes
options=(
    --content "$HOME/library"
    --target "$HOME/library/People/Genesis 9/Genesis 9.duf"
    --save-library "$HOME/library" --vendor Me --product "My Shapes"
)
